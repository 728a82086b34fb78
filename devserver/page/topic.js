// What the host queued for this visit, above the conversation, until the visitor sends it or puts it away.

import { card, titleOf } from "./card.js";
import { byId, icon, make } from "./dom.js";
import { queuedMessage } from "./environment.js";
import { text } from "./texts.js";

/** `onSend(body)` sends the queued message; `onCommand(title, command)` a menu of its card. */
export function showTopic(onSend, onCommand) {
  const body = queuedMessage();
  if (!body || !titleOf(body)) return;
  const topic = byId("topic");
  const content = card(body, onCommand);
  const send = make("button", "topic-send", { type: "button", "data-testid": "topic-send" }, text("topicSend"));
  const closing = { type: "button", "data-testid": "topic-close", "aria-label": text("close") };
  const close = make("button", "icon-button topic-close", closing, icon("close"));
  content.append(send);
  send.addEventListener("click", () => {
    topic.hidden = true;
    onSend(body);
  });
  close.addEventListener("click", () => (topic.hidden = true));
  topic.setAttribute("aria-label", text("topic"));
  topic.append(make("p", "topic-label", {}, text("topic")), close, content);
  topic.hidden = false;
}

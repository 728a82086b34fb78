// Press to talk: held, the native side records; slid up, it is about to cancel; released, it sends or cancels.

import { post } from "./bridge.js";
import { byId } from "./dom.js";
import { deviceId } from "./storage.js";
import { text } from "./texts.js";

/** How far above the button, in points, a finger has to be to cancel. */
const cancelDistance = 40;

const captions = { idle: "talk", recording: "talking", cancelling: "cancelling" };

export function prepareTalk(button) {
  let state = "idle";

  const tell = (action) => post("recording", { deviceId, action });
  const enter = (next) => {
    state = next;
    button.dataset.state = next;
    byId("talk-text").textContent = text(captions[next]);
  };
  const start = () => {
    if (state !== "idle") return;
    enter("recording");
    tell("start");
  };
  const finish = (action) => {
    if (state === "idle") return;
    enter("idle");
    tell(action);
  };
  const moveTo = (y) => {
    const isAway = y < button.getBoundingClientRect().top - cancelDistance;
    if (isAway && state === "recording") {
      enter("cancelling");
      tell("hold");
    } else if (!isAway && state === "cancelling") {
      enter("recording");
      tell("recover");
    }
  };

  button.addEventListener("pointerdown", (event) => {
    if (event.button !== 0) return;
    button.setPointerCapture(event.pointerId);
    start();
  });
  button.addEventListener("pointermove", (event) => moveTo(event.clientY));
  button.addEventListener("pointerup", () => finish(state === "cancelling" ? "cancel" : "end"));
  button.addEventListener("pointercancel", () => finish("cancel"));
  button.addEventListener("contextmenu", (event) => event.preventDefault());

  button.addEventListener("keydown", (event) => {
    if (event.key === "Escape" && state !== "idle") {
      event.preventDefault(); // a key that the page takes does not leave the chat
      finish("cancel");
    }
    if (event.key !== " " && event.key !== "Enter") return;
    event.preventDefault();
    if (!event.repeat) start();
  });
  button.addEventListener("keyup", (event) => {
    if (event.key === " " || event.key === "Enter") finish("end");
  });
  button.addEventListener("blur", () => finish("cancel"));
  window.addEventListener("pagehide", () => finish("cancel"));
  enter("idle");
}

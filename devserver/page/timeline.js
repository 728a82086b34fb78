// The list of messages: groups by time and sender, delivery states, and the position within.

import { contentOf } from "./bubbles.js";
import { byId, icon, make } from "./dom.js";
import { text, timeText } from "./texts.js";
import { addUnread, clearUnread } from "./unread.js";

/** Messages further apart than this, in milliseconds, get a time between them. */
const longPause = 5 * 60_000;
/** Messages of one sender within this time stand close together. */
const sameBreath = 60_000;

/** `memberType` of the message record. */
const visitor = 1;

const scroller = byId("scroller");
const list = byId("timeline");
const typing = byId("typing");
const toLatest = byId("to-latest");

export class Timeline {
  #onCommand;
  #last = null;
  #agentName = "";
  /** Until the visitor scrolls up. What is added meanwhile moves the end, not the visitor. */
  #staysAtEnd = true;
  #lastTop = 0;
  /** Messages of the visitor by client identifier. */
  #mine = new Map();

  constructor(onCommand) {
    this.#onCommand = onCommand;
    toLatest.addEventListener("click", () => this.#scrollToEnd());
    scroller.addEventListener("scroll", () => this.#scrolled());
    // What loads later or a smaller window must not push the last message out of sight.
    const observer = new ResizeObserver(() => this.#staysAtEnd && this.#scrollToEnd());
    observer.observe(list);
    observer.observe(scroller);
    document.addEventListener("visibilitychange", () => this.#look());
  }

  /** Adds by `work` what was said before: a screen reader is left in peace with it, and nothing moves. */
  addSilently(work) {
    list.setAttribute("aria-live", "off");
    work();
    for (const row of list.children) row.classList.add("settled");
    setTimeout(() => list.setAttribute("aria-live", "polite"), 300);
  }

  /** Answers that came before this page was there. */
  set unread(count) {
    addUnread(count);
    this.#look();
  }

  set agentName(name) {
    this.#agentName = name;
  }

  /** Adds a message, or confirms one of the visitor's that is there already. */
  add(message) {
    const known = this.#mine.get(message.cMid);
    if (known) return this.#setState(known, message.mId ? "arrived" : "sending");
    const isMine = message.memberType === visitor;
    const element = this.#element(message, isMine);
    this.#place(element, message.createTime ?? Date.now(), isMine);
    if (isMine && message.cMid) this.#remember(message, element);
    if (this.#staysAtEnd || isMine) this.#scrollToEnd();
    else toLatest.hidden = false;
    if (!isMine && !this.#isWatched()) addUnread(1);
  }

  /** Tells of the visitor's unconfirmed messages whether there is a connection to send them. */
  set isOnline(isOnline) {
    const state = isOnline ? "sending" : "waiting";
    for (const element of this.#mine.values())
      if (!element.querySelector(".state.arrived, .state.failed")) this.#setState(element, state);
  }

  /** Shows how much of a message's file is uploaded, from 0 to 1; nothing any more after null. */
  showUpload(cMid, part) {
    const element = this.#mine.get(cMid);
    const bar = element.querySelector("progress") ?? make("progress", "", { "aria-label": text("uploading") });
    if (part === null) return bar.remove();
    if (!bar.parentNode) this.#setState(element, "sending");
    if (!bar.parentNode) element.querySelector(".state").before(bar);
    bar.value = part;
  }

  /** Says that a message is not sent and why, if that is known; `again`, if any, is what the visitor can do. */
  fail(cMid, reason, again) {
    const element = this.#mine.get(cMid);
    element.querySelector("progress")?.remove();
    this.#setState(element, "failed");
    const line = element.querySelector(".state");
    if (reason) line.append(` · ${reason}`);
    if (!again) return;
    const retry = make("button", "retry", { type: "button", "data-testid": "retry" }, text("retry"));
    retry.addEventListener("click", again);
    line.append(" ", retry);
  }

  set isTyping(isTyping) {
    typing.hidden = !isTyping;
    if (this.#staysAtEnd) this.#scrollToEnd();
  }

  #element(message, isMine) {
    const { element, isWide } = contentOf(message, this.#onCommand);
    const sender = make("p", "visually-hidden", {}, `${isMine ? text("me") : this.#agentName}: `);
    const row = make("div", "message", { "data-testid": isMine ? "message-mine" : "message-agent" });
    row.classList.toggle("mine", isMine);
    row.classList.toggle("wide", isWide);
    if (!isMine) row.append(make("span", "avatar", { "aria-hidden": "true" }, icon("agent")));
    row.append(make("div", "content", {}, sender, element));
    return row;
  }

  #place(element, time, isMine) {
    if (!this.#last || time - this.#last.time > longPause) {
      list.append(make("p", "time", {}, timeText(new Date(time))));
      this.#last = null;
    }
    if (this.#last?.isMine === isMine && time - this.#last.time < sameBreath) {
      element.classList.add("joined");
      this.#last.element.classList.add("before-joined");
    }
    list.append(element);
    this.#last = { element, time, isMine };
  }

  #remember(message, element) {
    this.#mine.set(message.cMid, element);
    element.append(make("p", "state", { "data-testid": "state" }));
    this.#setState(element, message.mId ? "arrived" : "sending");
  }

  #setState(element, state) {
    const line = element.querySelector(".state");
    line.className = `state ${state}`;
    line.setAttribute("aria-live", state === "failed" ? "polite" : "off");
    line.textContent = text(state);
  }

  #isWatched() {
    return this.#staysAtEnd && !document.hidden;
  }

  #look() {
    if (this.#isWatched()) clearUnread();
  }

  #isAtEnd() {
    return scroller.scrollHeight - scroller.scrollTop - scroller.clientHeight < 60;
  }

  #scrolled() {
    if (this.#isAtEnd()) {
      this.#staysAtEnd = true;
      toLatest.hidden = true;
      this.#look();
    } else if (scroller.scrollTop < this.#lastTop) {
      this.#staysAtEnd = false;
    }
    this.#lastTop = scroller.scrollTop;
  }

  #scrollToEnd() {
    this.#staysAtEnd = true;
    toLatest.hidden = true;
    scroller.scrollTop = scroller.scrollHeight;
    this.#look();
  }
}

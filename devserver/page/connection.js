// The web socket to the agent: comes back by itself, and keeps what was written meanwhile.

import { locale, queryValue } from "./environment.js";
import { listOf, numberOf } from "./records.js";
import { keep, recall, visitor } from "./storage.js";

const firstWait = 500;
const longestWait = 8000;
const patience = 8000;

export class Connection {
  #handlers;
  #socket = null;
  #wait = firstWait;
  #retry = 0;
  #silence = 0;
  #lastId = 0;
  #isAwaited = false; // an answer that is being typed
  /** Messages of the visitor that the server has not confirmed, by client identifier. They outlast the page. */
  #unconfirmed = new Map(listOf({ unsent: recall("unsent") }, "unsent").map((message) => [message.cMid, message]));

  /**
   * `handlers`: onState(isOpen), onAgent(profile), onTyping(isTyping), onMessage(message, shortcuts), and
   * onHistory(isFirst, unread, add), which calls `add` to have onMessage called for what the page has missed.
   */
  constructor(handlers) {
    this.#handlers = handlers;
    window.addEventListener("online", () => this.#openNow());
  }

  get isOpen() {
    return this.#socket?.readyState === WebSocket.OPEN;
  }

  open() {
    const scheme = location.protocol === "https:" ? "wss:" : "ws:";
    const token = encodeURIComponent(queryValue("access_token"));
    const socket = new WebSocket(`${scheme}//${location.host}/chat-socket?access_token=${token}`);
    this.#socket = socket;
    this.#expectAnswer();
    socket.addEventListener("open", () => this.#greet());
    socket.addEventListener("message", (event) => this.#receive(event.data));
    socket.addEventListener("close", () => this.#lost(socket));
  }

  /** Sends a message record that has a `cMid`, now or as soon as there is a connection. */
  send(message) {
    this.#unconfirmed.set(message.cMid, message);
    this.#keepUnconfirmed();
    if (!this.isOpen) return;
    this.#post({ type: "message", message });
    this.#expectAnswer();
  }

  /** What was written and has not arrived. */
  get unsent() {
    return [...this.#unconfirmed.values()];
  }

  #keepUnconfirmed() {
    keep("unsent", this.unsent);
  }

  #post(frame) {
    this.#socket.send(JSON.stringify(frame));
  }

  #greet() {
    this.#wait = firstWait;
    this.#post({ type: "hello", session: visitor, language: locale, after: this.#lastId });
    for (const message of this.#unconfirmed.values()) this.#post({ type: "message", message });
    this.#handlers.onState(true);
  }

  /** A connection that stands still is none, although nobody has closed it. */
  #expectAnswer() {
    clearTimeout(this.#silence);
    const socket = this.#socket;
    this.#silence = setTimeout(() => {
      socket.close();
      this.#lost(socket);
    }, patience);
  }

  #receive(data) {
    clearTimeout(this.#silence);
    let frame;
    try {
      frame = JSON.parse(data);
    } catch {
      return;
    }
    if (frame?.type === "agent") this.#handlers.onAgent(frame);
    if (frame?.type === "history") this.#catchUp(frame);
    if (frame?.type === "typing") {
      this.#isAwaited = Boolean(frame.on);
      this.#handlers.onTyping(this.#isAwaited);
    }
    if (frame?.type === "message" && frame.message) this.#take(frame.message, frame.shortcuts);
    if (this.#isAwaited || this.#unconfirmed.size > 0) this.#expectAnswer();
  }

  #catchUp(frame) {
    const isFirst = this.#lastId === 0;
    if (numberOf(frame, "lastId") < this.#lastId) this.#lastId = 0; // another server, which counts anew
    this.#handlers.onHistory(isFirst, numberOf(frame, "unread"), () => {
      for (const { message, shortcuts } of listOf(frame, "messages")) this.#take(message, shortcuts);
    });
  }

  #take(message, shortcuts) {
    if (message.mId <= this.#lastId) return;
    this.#lastId = message.mId;
    if (this.#unconfirmed.delete(message.cMid)) this.#keepUnconfirmed();
    this.#handlers.onMessage(message, Array.isArray(shortcuts) ? shortcuts : []);
  }

  #lost(socket) {
    if (socket !== this.#socket) return;
    this.#socket = null;
    this.#isAwaited = false;
    clearTimeout(this.#silence);
    this.#handlers.onState(false);
    // A little disorder keeps many pages from coming back in the same moment.
    this.#retry = setTimeout(() => this.open(), this.#wait * (0.8 + Math.random() * 0.4));
    this.#wait = Math.min(this.#wait * 2, longestWait);
  }

  #openNow() {
    if (this.#socket) return;
    clearTimeout(this.#retry);
    this.open();
  }
}

// The chat page: puts its parts together.

import { afterFirstPaint, isNative, post, track } from "./bridge.js";
import { mostDocumentBytes, mostMediaBytes, prepareComposer } from "./composer.js";
import { Connection } from "./connection.js";
import { byId, make } from "./dom.js";
import { isEnglish, safeAreas } from "./environment.js";
import { messageFromDropped, messagesFromFiles, takeDroppedFiles } from "./files.js";
import { MessageType, textOf, withoutLocalData } from "./records.js";
import { text } from "./texts.js";
import { Timeline } from "./timeline.js";
import { showTopic } from "./topic.js";
import { upload } from "./upload.js";

const visitor = 1;

let agent = { name: "", title: "" };
let isOnline = false;
let isTyping = false;

const timeline = new Timeline(sendCommand);
const connection = new Connection({ onState, onAgent, onTyping, onMessage, onHistory });

function showState() {
  const state = !isOnline || !agent.name ? "connecting" : isTyping ? "typing" : "online";
  byId("agent-state").dataset.state = state;
  byId("agent-state-text").textContent = state === "online" ? agent.title : text(state);
  byId("agent-name").textContent = agent.name || text("title");
}

function onState(isOpen) {
  isOnline = isOpen;
  if (!isOpen) onTyping(false);
  byId("connection-note").hidden = isOpen;
  timeline.isOnline = isOpen;
  showState();
}

function onAgent(profile) {
  agent = { name: textOf(profile, "name"), title: textOf(profile, "title") };
  timeline.agentName = agent.name;
  showState();
}

function onTyping(isOn) {
  isTyping = isOn;
  timeline.isTyping = isOn;
  showState();
}

function onMessage(message, shortcuts) {
  timeline.add(message);
  showQuickReplies(message.memberType === visitor ? [] : shortcuts);
}

function onHistory(isFirst, unread, add) {
  if (!isFirst) return add(); // a screen reader has not read it
  timeline.addSilently(() => {
    add();
    for (const message of connection.unsent) timeline.add(message);
  });
  timeline.unread = unread;
}

/** Shows and sends a message. What is shown may hold more than what travels: pictures stay on this device. */
function send(body, shown = body, extra = {}) {
  connection.send(show(body, shown, extra));
}

/** Shows a message as one that is on its way, and returns what is to be sent. */
function show(body, shown = body, extra = {}) {
  const cMid = `${Date.now().toString(36)}-${Math.random().toString(36).slice(2, 10)}`;
  const mType = body.msgType;
  const message = { cMid, mType, memberType: visitor, messageBody: body, createTime: Date.now(), ...extra };
  timeline.add({ ...message, messageBody: shown });
  timeline.isOnline = connection.isOpen;
  showQuickReplies([]);
  const type = Object.keys(MessageType).find((name) => MessageType[name] === body.msgType) ?? "other";
  track("message_sent", { type });
  return message;
}

/** The uploads so far: one after the other, so that messages keep their order. */
let uploads = Promise.resolve();

/** Shows a message at once, and sends it when its file is on the server. `bytes` may still be on their way. */
function sendUploaded(bytes, body, shown) {
  const message = show(body, shown);
  const most = body.msgType === MessageType.video ? mostMediaBytes : mostDocumentBytes;
  if (body.fileSize > most) return timeline.fail(message.cMid, text("tooLarge"));
  const attempt = async () => {
    try {
      const tellPart = (part) => timeline.showUpload(message.cMid, part);
      const mediaUrl = await upload(await bytes, body.fileName, tellPart);
      tellPart(null);
      connection.send({ ...message, messageBody: { ...body, mediaUrl } });
    } catch (error) {
      timeline.fail(message.cMid, error.message, start);
    }
  };
  const start = () => {
    timeline.showUpload(message.cMid, 0);
    uploads = uploads.then(attempt);
  };
  start();
}

function sendText(content) {
  send({ msgType: MessageType.text, content });
}

function sendCommand(title, command) {
  const body = { msgType: MessageType.text, content: title };
  send(body, body, command ? { optionSelected: command } : {});
}

function sendFiles(files) {
  for (const { sent, shown } of messagesFromFiles(files)) {
    if (sent.mediaUrl || !shown.imageUrl) send(sent, shown);
    else sendUploaded(fetch(shown.imageUrl).then((answer) => answer.blob()), sent, shown);
  }
}

/** Sends what the host queued as a card, whatever it was. */
function sendTopic(body) {
  const msgType = MessageType.card;
  send({ ...withoutLocalData(body), msgType }, { ...body, msgType });
}

function showQuickReplies(shortcuts) {
  const group = byId("quick-replies");
  const chips = shortcuts.filter((shortcut) => textOf(shortcut, "title")).map((shortcut) => {
    const [title, command] = [textOf(shortcut, "title"), textOf(shortcut, "command")];
    const attributes = { type: "button", "data-testid": "quick-reply", "data-command": command };
    const chip = make("button", "chip", attributes, title);
    chip.addEventListener("click", () => sendCommand(title, command));
    return chip;
  });
  group.replaceChildren(...chips);
  group.hidden = chips.length === 0;
}

function nameControls() {
  document.documentElement.lang = isEnglish ? "en" : "zh-CN";
  document.title = text("title");
  const labels = {
    back: "back", scroller: "conversation", timeline: "messages", "message-input": "placeholder", send: "send",
    "quick-replies": "quickReplies",
    "native-tools": "tools", "voice-toggle": "voice", photo: "photo", camera: "camera", document: "document",
    viewer: "picture", "viewer-close": "close",
  };
  for (const [id, key] of Object.entries(labels)) byId(id).setAttribute("aria-label", text(key));
  for (const id of ["back", "voice-toggle", "photo", "camera", "document", "send"]) byId(id).classList.add("tip");
  byId("message-input").placeholder = text("placeholder");
  byId("connection-note-text").textContent = text("reconnecting");
  byId("to-latest-text").textContent = text("toLatest");
  byId("browser-note").textContent = text("browserNote");
}

function keepClearOfEdges() {
  const { top, bottom } = safeAreas();
  document.documentElement.style.setProperty("--hh", `${top}px`);
  document.documentElement.style.setProperty("--bh", `${bottom}px`);
}

function prepareNativeSide() {
  byId("lost").remove();
  byId("back").hidden = !isNative;
  byId("browser-note").hidden = isNative;
  byId("back").addEventListener("click", () => post("goBack"));
  setTimeout(() => (byId("browser-note").hidden = true), 6000);
  // The native side calls these by name.
  window.handleSelectedFiles = (files) => sendFiles(Array.isArray(files) ? files : []);
  window.handleSelectedRecord = (record) => sendFiles([record]);
}

keepClearOfEdges();
nameControls();
prepareNativeSide();
prepareComposer(sendText);
takeDroppedFiles((files) => {
  for (const file of files) {
    const { sent, shown } = messageFromDropped(file);
    sendUploaded(file, sent, shown);
  }
});
showTopic(sendTopic, sendCommand);
showState();
connection.open();
afterFirstPaint(() => {
  post("initLoaded");
  // Where it brings up no keyboard on the screen.
  if (matchMedia("(pointer: fine)").matches) byId("message-input").focus();
  track("chat_open", { language: navigator.language });
});

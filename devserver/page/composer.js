// The text field, the send button and the tools that the native side serves.

import { isNative, post } from "./bridge.js";
import { byId, changeIcon } from "./dom.js";
import { deviceId, keep, recall } from "./storage.js";
import { prepareTalk } from "./talk.js";
import { text } from "./texts.js";

/** The largest video, and the largest other file, in bytes. */
export const mostMediaBytes = 50 * 1024 * 1024;
export const mostDocumentBytes = 30 * 1024 * 1024;
const documentTypes = [
  "application/pdf", "text/plain", "application/zip", "application/msword", "application/vnd.ms-excel", "image/*",
];

const input = byId("message-input");
const send = byId("send");

/** The field is as tall as its text, up to what the style sheet allows. */
function fit() {
  input.style.height = "auto";
  input.style.height = `${input.scrollHeight}px`;
  send.disabled = input.value.trim() === "";
}

/** Shows what is written, and keeps it for a page that comes after this one. */
function changed() {
  fit();
  keep("draft", input.value);
}

function prepareText(onText) {
  const submit = () => {
    const content = input.value.trim();
    if (!content) return;
    input.value = "";
    changed();
    onText(content);
  };
  const draft = recall("draft");
  if (typeof draft === "string") input.value = draft;
  fit();
  input.addEventListener("input", changed);
  input.addEventListener("keydown", (event) => {
    // An input method uses Enter to choose a word; 229 is how it tells where isComposing comes too late.
    if (event.key !== "Enter" || event.shiftKey || event.isComposing || event.keyCode === 229) return;
    event.preventDefault();
    submit();
  });
  byId("composer").addEventListener("submit", (event) => {
    event.preventDefault();
    submit();
    input.focus();
  });
}

function prepareVoice() {
  const toggle = byId("voice-toggle");
  const talk = byId("talk");
  toggle.addEventListener("click", () => {
    const isVoice = talk.hidden;
    talk.hidden = !isVoice;
    input.hidden = isVoice;
    toggle.setAttribute("aria-pressed", String(isVoice));
    toggle.setAttribute("aria-label", text(isVoice ? "keyboard" : "voice"));
    changeIcon(toggle, isVoice ? "keyboard" : "voice");
    if (!isVoice) input.focus();
  });
  prepareTalk(talk);
}

/** Puts the composer to work; `onText(content)` sends what was written. */
export function prepareComposer(onText) {
  prepareText(onText);
  if (!isNative) return;
  byId("native-tools").hidden = false;
  prepareVoice();
  byId("photo").addEventListener("click", () => post("openPhotoLibraryPicker", { deviceId, fileSize: mostMediaBytes }));
  byId("camera").addEventListener("click", () => post("openCamera", { deviceId, fileSize: mostMediaBytes }));
  byId("document").addEventListener("click", () =>
    post("openDocumentPicker", { deviceId, fileSize: mostDocumentBytes, mimeTypes: documentTypes }));
}

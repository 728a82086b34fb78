// What the native side hands over after picking or recording, as messages.

import { MessageType, addressOf, numberOf, pictureOf, textOf } from "./records.js";
import { text } from "./texts.js";

const types = { Image: MessageType.image, Video: MessageType.video, Record: MessageType.voice, File: MessageType.file };

function nameOf(file) {
  const name = textOf(file, "name");
  const suffix = textOf(file, "suffix");
  if (!name || !suffix || name.toLowerCase().endsWith(`.${suffix.toLowerCase()}`)) return name;
  return `${name}.${suffix}`;
}

/** Has `onFiles(files)` called with what the visitor pastes or drops anywhere on the page. */
export function takeDroppedFiles(onFiles) {
  const take = (event, data) => {
    const files = [...(data?.files ?? [])];
    if (!files.length) return;
    event.preventDefault(); // the native side takes what a page does not
    onFiles(files);
  };
  document.addEventListener("paste", (event) => take(event, event.clipboardData));
  document.addEventListener("drop", (event) => take(event, event.dataTransfer));
  document.addEventListener("dragover", (event) => {
    if (event.dataTransfer?.types.includes("Files")) event.preventDefault();
  });
}

/** The body of a message for such a file, as it is sent and as it is shown. */
export function messageFromDropped(file) {
  const kind = { image: MessageType.image, video: MessageType.video }[file.type.split("/")[0]];
  const sent = { msgType: kind ?? MessageType.file, fileName: file.name || text("file"), fileSize: file.size };
  if (file.type) sent.contentType = file.type;
  const shown = kind === MessageType.image ? { ...sent, imageUrl: URL.createObjectURL(file) } : sent;
  return { sent, shown };
}

/**
 * For every file description the body that is sent and the body that is shown: inline pictures are shown but do not
 * travel. What is no description is left out.
 */
export function messagesFromFiles(files) {
  return files.filter((file) => file && typeof file === "object").map((file) => {
    const sent = { msgType: types[file.type] ?? MessageType.file, fileName: nameOf(file) };
    const mediaUrl = addressOf(file, "url");
    if (mediaUrl) sent.mediaUrl = mediaUrl;
    for (const key of ["width", "height", "duration"]) if (numberOf(file, key)) sent[key] = file[key];
    if (numberOf(file, "size")) sent.fileSize = file.size;
    if (textOf(file, "mimeType")) sent.contentType = file.mimeType;
    const picture = pictureOf(file, "base64Str");
    const key = sent.msgType === MessageType.video ? "coverUrl" : "imageUrl";
    return { sent, shown: picture ? { ...sent, [key]: picture } : sent };
  });
}

// What the native side hands over after picking or recording, as messages.

import { MessageType, addressOf, numberOf, pictureOf, textOf } from "./records.js";

const types = { Image: MessageType.image, Video: MessageType.video, Record: MessageType.voice, File: MessageType.file };

function nameOf(file) {
  const name = textOf(file, "name");
  const suffix = textOf(file, "suffix");
  if (!name || !suffix || name.toLowerCase().endsWith(`.${suffix.toLowerCase()}`)) return name;
  return `${name}.${suffix}`;
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

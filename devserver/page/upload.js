// The page's own way of bringing files to the server, for those that the native side does not upload.

import { queryValue } from "./environment.js";
import { addressOf, textOf } from "./records.js";
import { deviceId } from "./storage.js";

/**
 * Sends a file's bytes and resolves to the address that they have then; rejects with the server's reason as message.
 * `onProgress(part)` is told how much of it is on its way, from 0 to 1.
 */
export function upload(bytes, name, onProgress) {
  const form = new FormData();
  form.append("file", bytes, name || "file");
  const request = new XMLHttpRequest();
  request.open("POST", "/api/chat/outside/guest/file/upload");
  request.responseType = "json";
  request.setRequestHeader("Authorization", `Bearer ${queryValue("access_token")}`);
  request.setRequestHeader("x-entry", queryValue("x-entry"));
  request.setRequestHeader("x-device-id", deviceId);
  return new Promise((resolve, reject) => {
    request.upload.addEventListener("progress", ({ loaded, total }) => onProgress(total ? loaded / total : 0));
    request.addEventListener("error", () => reject(new Error()));
    request.addEventListener("load", () => {
      const url = request.status === 200 ? addressOf(request.response, "url") : "";
      if (url) resolve(url);
      else reject(new Error(textOf(request.response, "msg")));
    });
    request.send(form);
  });
}

// Reading records of any shape: what is missing or of another type is simply absent.

/** `msgType` and `mType` of the message record. */
export const MessageType = { text: 1, image: 2, voice: 3, video: 4, file: 5, link: 6, card: 7 };

/** `type` of a card's menu: anything else sends its command. */
export const linkMenu = 2;

/** A text or a number as text, trimmed; "" for anything else. */
export function textOf(record, ...keys) {
  for (const key of keys) {
    const value = record?.[key];
    if (typeof value === "string" && value.trim()) return value.trim();
    if (typeof value === "number" && Number.isFinite(value)) return String(value);
  }
  return "";
}

export function numberOf(record, key) {
  const value = record?.[key];
  return typeof value === "number" && Number.isFinite(value) && value >= 0 ? value : 0;
}

/** The objects in an array. */
export function listOf(record, key) {
  const value = record?.[key];
  if (!Array.isArray(value)) return [];
  return value.filter((entry) => entry && typeof entry === "object" && !Array.isArray(entry));
}

/** The first of the keys that holds an http or https address; "" when none does. */
export function addressOf(record, ...keys) {
  for (const key of keys) {
    const value = textOf(record, key);
    if (!value) continue;
    try {
      const url = new URL(value);
      if (url.protocol === "http:" || url.protocol === "https:") return url.href;
    } catch {
      // Not an address: the next key may hold one.
    }
  }
  return "";
}

/** The first of the keys that holds a picture: inline data, or an address. */
export function pictureOf(record, ...keys) {
  for (const key of keys) {
    const value = textOf(record, key);
    if (/^(data:image\/[\w.+-]+[;,]|blob:)/i.test(value)) return value;
    const address = addressOf(record, key);
    if (address) return address;
  }
  return "";
}

/** The picture that a record carries as Base64 bytes. */
export function inlinePictureOf(record, key) {
  const value = textOf(record, key);
  return /^[A-Za-z0-9+/]+=*$/.test(value) && value.length > 16 ? `data:image/jpeg;base64,${value}` : "";
}

/** What remains of a message body without the bytes and paths that mean something on this device only. */
export function withoutLocalData(body) {
  const local = ["image", "voiceLocalPath", "annexLocalData", "annexLocalPath", "videoLocalPath", "videoCoverImage"];
  return Object.fromEntries(Object.entries(body).filter(([key]) => !local.includes(key)));
}

// What outlasts the page: small values by visitor, in this browser's own storage.

import { queryValue } from "./environment.js";

function stored(key) {
  try {
    return JSON.parse(localStorage.getItem(key));
  } catch {
    return null; // storage may be forbidden, and others may have written there
  }
}

function store(key, value) {
  try {
    localStorage.setItem(key, JSON.stringify(value));
  } catch {
    // Forbidden or full: the value then ends with the page.
  }
}

function ownIdentifier() {
  const known = stored("chat.visitor");
  if (typeof known === "string") return known;
  const bytes = crypto.getRandomValues(new Uint8Array(16));
  const fresh = Array.from(bytes, (byte) => byte.toString(16).padStart(2, "0")).join("");
  store("chat.visitor", fresh);
  return fresh;
}

/** The device as the application names it; a browser without an application has an identifier of its own. */
export const deviceId = queryValue("deviceId") || ownIdentifier();

/** Whose conversation this is: an application may give all visitors of a device the same identifier. */
export const visitor = [deviceId, queryValue("identity_id")].filter(Boolean).join(" ");

/** What was kept under the name for this visitor; null without it. */
export const recall = (name) => stored(`chat.${name} ${visitor}`);

/** Keeps a value that JSON can hold. */
export const keep = (name, value) => store(`chat.${name} ${visitor}`, value);

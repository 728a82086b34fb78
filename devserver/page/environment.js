// What the page is told of its surroundings: its address's query, the component's environment record, the language.

import { isNative } from "./bridge.js";

function decoded(text) {
  try {
    return decodeURIComponent(text);
  } catch {
    return text;
  }
}

/** A value of the page's query. Values come unescaped in part, so "+" is a plus and a broken escape stays as it is. */
export function queryValue(name) {
  const pair = location.search.slice(1).split("&").find((piece) => piece.startsWith(`${name}=`));
  return pair ? decoded(pair.slice(name.length + 1)) : "";
}

/** The message that the host queued for this visit, an object, or null. It comes last and may hold "&" and "=". */
export function queuedMessage() {
  const marker = "&object_value=";
  const at = location.search.indexOf(marker);
  if (at < 0) return null;
  try {
    const value = JSON.parse(decoded(location.search.slice(at + marker.length)));
    return value && typeof value === "object" && !Array.isArray(value) ? value : null;
  } catch {
    return null;
  }
}

function points(value) {
  const number = Number(value);
  return Number.isFinite(number) && number > 0 ? Math.min(number, 200) : 0;
}

/** Heights of the status bar and of the home indicator's zone. The query has them too, should the record be missing. */
export function safeAreas() {
  if (!isNative) return { top: 0, bottom: 0 };
  const given = window.extraParams;
  if (given && typeof given === "object") return { top: points(given.hh), bottom: points(given.bh) };
  return { top: points(queryValue("hh")), bottom: points(queryValue("bh")) };
}

// Chinese for Chinese and for an engine without a locale, which calls it "C"; English for all else.
const language = navigator.language ?? "C";
export const isEnglish = !/^(zh\b|c$)/i.test(language);
export const locale = !isEnglish ? "zh-CN" : /^en\b/i.test(language) ? language : "en";

// @ts-check
/// <reference path="../orivex-page.d.ts" />

// Tries everything that docs/page.md promises of the native side, and says in words what is missing.

/** @typedef {"open" | "fine" | "missing"} State */

const handlers = window.webkit?.messageHandlers;
const deviceId = new URLSearchParams(location.search).get("deviceId") ?? "";

/** What each row of the page has come to. @type {Map<string, { state: State, text: string }>} */
const results = new Map();

/** @type {Map<string, HTMLElement>} */
const rows = new Map();

/** @param {string} name */
function addRow(name) {
  const row = document.createElement("li");
  row.dataset.name = name;
  row.append(Object.assign(document.createElement("b"), { textContent: `${name} ` }), document.createElement("p"));
  document.querySelector("ol")?.append(row);
  rows.set(name, row);
  return row;
}

/** @param {string} name @param {State} state @param {string} text */
function settle(name, state, text) {
  results.set(name, { state, text });
  const row = rows.get(name) ?? addRow(name);
  row.dataset.state = state;
  const line = row.querySelector("p");
  if (line) line.textContent = text;
  showReport();
}

function showReport() {
  /** @param {State} state */
  const of = (state) => [...results].filter(([, result]) => result.state === state);
  const missing = of("missing").map(([name, { text }]) => `${name}: ${text}`);
  const open = of("open").map(([name]) => name);
  const lines = missing.length > 0 ? ["Missing:", ...missing] : [open.length > 0 ? "So far nothing is missing." : "Nothing is missing."];
  if (open.length > 0) lines.push(`Not tried to the end: ${open.join(", ")}`);
  const output = document.querySelector("output");
  if (output) output.textContent = lines.join("\n");
}

/** Settles a row by the faults that were found. @param {string} name @param {string[]} faults */
function judge(name, faults) {
  settle(name, faults.length > 0 ? "missing" : "fine", faults.join("; ") || "as it should be");
}

/** @param {HTMLElement} row @param {string} text @param {() => void} action */
function addButton(row, text, action) {
  const button = Object.assign(document.createElement("button"), { textContent: text, onclick: action });
  row.insertBefore(button, row.querySelector("p"));
  return button;
}

// ---- What can be looked at

/**
 * The faults of an object's keys. `shape` has the type of each, with "?" where a key may be absent.
 * @param {unknown} value @param {Record<string, string>} shape
 */
function faultsOf(value, shape) {
  if (typeof value !== "object" || value === null) return ["it is no object"];
  const faults = [];
  for (const [key, wanted] of Object.entries(shape)) {
    const found = /** @type {Record<string, unknown>} */ (value)[key];
    const type = wanted.replace("?", "");
    if (found === undefined && wanted.endsWith("?")) continue;
    const fits = type === "integer" ? Number.isInteger(found) : typeof found === type;
    if (!fits) faults.push(found === undefined ? `${key} is missing` : `${key} is ${JSON.stringify(found)}, no ${type}`);
  }
  return faults;
}

function lookAtSurroundings() {
  const asked = ["access_token", "x-entry", "identity_id", "deviceId", "app_id", "app_name", "env_name", "hh", "bh", "object_value"];
  const given = new URLSearchParams(location.search);
  judge("address", asked.filter((name) => !given.has(name)).map((name) => `${name} is missing`));
  judge(
    "window.extraParams",
    faultsOf(window.extraParams, { app_name: "string", env_name: "string", hh: "integer", bh: "integer", os_name: "string" }),
  );
  judge("user agent", /^KepChatSDK\/iOS\/[\d.]+\(.+\)$/.test(navigator.userAgent) ? [] : [`it is ${navigator.userAgent}`]);

  const frame = document.createElement("iframe");
  document.body.append(frame);
  const inFrame = frame.contentWindow?.webkit?.messageHandlers;
  frame.remove();
  judge("limits", [
    ...(inFrame ? ["a frame can post messages"] : []),
    ...(refusesTooMuch() ? [] : ["a message of 10,001 values is not refused"]),
    ...("mediaDevices" in navigator ? ["navigator.mediaDevices is there"] : []),
  ]);
}

function refusesTooMuch() {
  try {
    // A handler that ignores its body, in case that it takes it.
    handlers?.initLoaded.postMessage(new Array(10000).fill(0));
  } catch (error) {
    return error instanceof RangeError;
  }
  return false;
}

// ---- What happens outside the page: only the visitor knows

/** @param {keyof Orivex.Messages} name @param {() => void} post @param {string} question */
function ask(name, post, question) {
  const row = addRow(name);
  settle(name, "open", question);
  addButton(row, "Try", post);
  addButton(row, "Yes", () => settle(name, "fine", "you have seen it"));
  addButton(row, "No", () => settle(name, "missing", `it had no effect. ${question}`));
}

// ---- What is answered

const shapeOfFile = {
  name: "string?", type: "string", url: "string?", base64Str: "string?", height: "number?", width: "number?",
  duration: "number?", suffix: "string", size: "integer?", mimeType: "string?",
};

/** @type {Record<string, Record<string, string>>} */
const alwaysThere = {
  File: { name: "string", url: "string", size: "integer", mimeType: "string" },
  Image: { name: "string", base64Str: "string", height: "number", width: "number", size: "integer", mimeType: "string" },
  Video: { name: "string", url: "string", height: "number", width: "number", duration: "number", size: "integer", mimeType: "string" },
  Record: { name: "string", url: "string", duration: "integer" },
};

/** @param {unknown} file @param {string[]} types */
function faultsOfFile(file, types) {
  const faults = faultsOf(file, shapeOfFile);
  if (faults.length > 0) return faults;
  const { type } = /** @type {Orivex.SelectedFile} */ (file);
  if (!types.includes(type)) return [`type is "${type}" instead of ${types.join(" or ")}`];
  return faultsOf(file, alwaysThere[type] ?? {});
}

/** The picker that was asked last. @type {keyof Orivex.Messages | null} */
let asked = null;

/** @param {"openCamera" | "openPhotoLibraryPicker" | "openDocumentPicker"} name @param {() => void} post */
function pick(name, post) {
  const row = addRow(name);
  settle(name, "open", "Pick something.");
  addButton(row, "Try", () => {
    asked = name;
    settle(name, "missing", "no answer came yet");
    post();
  });
}

window.handleSelectedFiles = (files) => {
  const name = asked ?? "handleSelectedFiles";
  if (!Array.isArray(files) || files.length === 0) return judge(name, ["the answer is no array with files"]);
  const types = name === "openDocumentPicker" ? ["File", "Image"] : ["Image", "Video"];
  judge(name, files.flatMap((file, index) => faultsOfFile(file, types).map((fault) => `file ${index + 1}: ${fault}`)));
};

function addPress() {
  const row = addRow("recording");
  settle("recording", "open", "Hold for two seconds. Afterwards once more, but let go above the button: that must send nothing.");
  const button = addButton(row, "Hold", () => {});
  /** @type {"up" | "down" | "away"} */
  let finger = "up";
  /** @param {"start" | "hold" | "recover" | "end" | "cancel"} action */
  const press = (action) => handlers?.recording.postMessage({ deviceId, action });
  let isSent = false;

  button.onpointerdown = () => {
    finger = "down";
    press("start");
  };
  window.addEventListener("pointermove", ({ clientY }) => {
    const isAway = clientY < button.getBoundingClientRect().top - 40;
    if (finger === "down" && isAway) press("hold");
    if (finger === "away" && !isAway) press("recover");
    if (finger !== "up") finger = isAway ? "away" : "down";
  });
  window.addEventListener("pointerup", () => {
    if (finger === "up") return;
    isSent = finger === "down";
    finger = "up";
    press(isSent ? "end" : "cancel");
    if (isSent) settle("recording", "missing", "no answer came yet");
  });
  window.addEventListener("pointercancel", () => {
    if (finger !== "up") press("cancel");
    finger = "up";
  });
  window.handleSelectedRecord = (record) => {
    judge("recording", isSent ? faultsOfFile(record, ["Record"]) : ["a press that was cancelled has an answer"]);
    isSent = false;
  };
}

// ---- All of it

/** @type {(keyof Orivex.Messages)[]} */
const names = ["trackEvent", "openUrl", "openFile", "openCamera", "openPhotoLibraryPicker", "openDocumentPicker", "initLoaded", "recording", "goBack"];
judge("window.webkit.messageHandlers", names.filter((name) => !handlers?.[name]).map((name) => `${name} is missing`));
lookAtSurroundings();
ask("initLoaded", () => location.reload(), "Did this page show at once, without a wait of four seconds?");
ask(
  "trackEvent",
  () => handlers?.trackEvent.postMessage({ name: "conformance", attributes: { page: "conformance" } }),
  "Did the application hear of an event “conformance”?",
);
ask("openUrl", () => handlers?.openUrl.postMessage("https://example.com/"), "Did another application open https://example.com/?");
ask(
  "openFile",
  () => handlers?.openFile.postMessage(new URL("sample.txt", location.href).href),
  "Did a choice of applications open?",
);
pick("openCamera", () => handlers?.openCamera.postMessage({ deviceId }));
pick("openPhotoLibraryPicker", () => handlers?.openPhotoLibraryPicker.postMessage({ deviceId }));
pick("openDocumentPicker", () => handlers?.openDocumentPicker.postMessage({ deviceId, mimeTypes: ["text/plain", "image/*"] }));
addPress();
const back = addRow("goBack");
settle("goBack", "open", "The last one: it closes the chat.");
addButton(back, "Try", () => {
  settle("goBack", "missing", "the page is still there");
  handlers?.goBack.postMessage(null);
});
const { hh = 0, bh = 0 } = window.extraParams ?? {};
document.body.style.padding = `${hh}px 0 ${hh + 2 * bh}px`;
handlers?.initLoaded.postMessage(null);

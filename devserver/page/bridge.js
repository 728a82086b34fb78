// The native side of the page: script messages out. What comes in are two global functions, see chat.js.

const handlers = window.webkit?.messageHandlers;

/** Whether the page runs inside the component and not in a plain browser. */
export const isNative = Boolean(handlers?.initLoaded);

/** Posts a script message; in a plain browser nothing happens. */
export function post(name, body = null) {
  handlers?.[name]?.postMessage(body);
}

/** Tells the host of an event. Attributes travel as text, whatever they are. */
export function track(name, attributes = {}) {
  const texts = Object.entries(attributes).map(([key, value]) => [key, String(value ?? "")]);
  post("trackEvent", { name, attributes: Object.fromEntries(texts) });
}

/** Opens an address outside the page. */
export function openOutside(url) {
  if (isNative) post("openUrl", url);
  else window.open(url, "_blank", "noopener");
}

/** Opens a file with what the device has for it. */
export function openFile(url) {
  if (isNative) post("openFile", url);
  else window.open(url, "_blank", "noopener");
}

/** Runs `work` once, when the page was painted or could have been: a page in a hidden view is never asked to paint. */
export function afterFirstPaint(work) {
  let done = false;
  const once = () => {
    if (done) return;
    done = true;
    work();
  };
  requestAnimationFrame(() => requestAnimationFrame(once));
  setTimeout(once, 400);
}

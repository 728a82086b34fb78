// The native side of the page: script messages out, two global functions in.

const handlers = window.webkit?.messageHandlers;

/** Whether the page runs inside the component and not in a plain browser. */
export const isNative = Boolean(handlers?.initLoaded);

/** Posts a script message; in a plain browser nothing happens. */
export function post(name, body = null) {
  handlers?.[name]?.postMessage(body);
}

/** Tells the host of an event. Attributes reach it as text, whatever they were. */
export function track(name, attributes = {}) {
  const texts = Object.entries(attributes).map(([key, value]) => [key, String(value ?? "")]);
  post("trackEvent", { name, attributes: Object.fromEntries(texts) });
}

/** Runs once, after the page was painted or could have been: a page in a hidden view may never be asked to paint. */
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

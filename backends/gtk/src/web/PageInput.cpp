#include "PageInput.h"

#include "PageScripts.h"

namespace orivex::gtk {
namespace {

// A finger belongs to the element that it went down on until the page releases it. `slop` is how far, in points, GTK
// lets a finger move before it scrolls, and `echo` how long, in milliseconds, WebKit may take for the mouse events that
// it makes of a tap: their pointer events would be a second press. Identifiers begin where no mouse's or pen's is.
// The verdict on a touch comes after the last of the page's own listeners. Where WebKit makes pointer events of touches
// itself (from 2.54 on), it cancels none when the page scrolls and presses the mouse besides: the page gets these here.
constexpr const char* touchPointers = R"js(
(() => {
  const slop = 8, echo = 700;
  const fingers = new Map();
  let nextId = 1000, last = {until: 0};
  const find = (id) => [...fingers.values()].find((finger) => finger.id === id);

  const targetOf = (finger) => finger.holder?.isConnected ? finger.holder
      : document.elementFromPoint(finger.x, finger.y) ?? document.documentElement;
  const details = (finger, event, type) => {
    const isDown = !['pointerup', 'pointercancel', 'pointerout', 'pointerleave'].includes(type);
    const {touch: {screenX, screenY, radiusX, radiusY, force}} = finger;
    return {
      pointerId: finger.id, pointerType: 'touch', isPrimary: finger.isPrimary,
      clientX: finger.x, clientY: finger.y, screenX, screenY, width: 2 * radiusX || 1, height: 2 * radiusY || 1,
      button: ['pointerdown', 'pointerup'].includes(type) ? 0 : -1, buttons: isDown ? 1 : 0,
      pressure: isDown ? force || 0.5 : 0, view: window, bubbles: true, composed: true,
      cancelable: !['pointercancel', 'gotpointercapture', 'lostpointercapture'].includes(type),
      ctrlKey: event?.ctrlKey, shiftKey: event?.shiftKey, altKey: event?.altKey, metaKey: event?.metaKey,
    };
  };
  const send = (type, finger, event, target = targetOf(finger)) =>
      target.dispatchEvent(new PointerEvent(type, details(finger, event, type)));
  const cross = (types, finger, event) => {
    const target = targetOf(finger);
    send(types[0], finger, event, target);
    for (let element = target; element; element = element.parentElement) {
      element.dispatchEvent(new PointerEvent(types[1],
          {...details(finger, event, types[1]), bubbles: false, cancelable: false}));
    }
  };
  const hold = (finger, element) => {
    if (finger.holder === element) return;
    if (finger.holder) send('lostpointercapture', finger);
    finger.holder = element;
    if (element) send('gotpointercapture', finger);
  };
  const end = (type, finger, event) => {
    send(type, finger, event);
    hold(finger, null);
    cross(['pointerout', 'pointerleave'], finger, event);
    fingers.delete(finger.touch.identifier);
  };

  const mayScroll = (finger, along) => {
    for (let element = finger.start; element instanceof Element; element = element.parentElement) {
      const action = getComputedStyle(element).touchAction ?? 'auto';
      if (!/auto|manipulation/.test(action) && !action.includes(along)) return false;
    }
    return true;
  };
  const judge = (finger, event) => {
    if (finger.isHeld ||= event.defaultPrevented) return;
    const away = [Math.abs(finger.x - finger.startX), Math.abs(finger.y - finger.startY)];
    if (event.type !== 'touchmove' || !finger.isStill || Math.max(...away) <= slop) return;
    finger.isStill = false;
    if (mayScroll(finger, away[0] > away[1] ? 'pan-x' : 'pan-y')) return end('pointercancel', finger, event);
    finger.isHeld = true;
    event.preventDefault();
  };
  const whenHeard = (finger, event) =>
      addEventListener(event.type, () => judge(finger, event), {once: true, passive: false});

  const moved = (event) => {
    for (const touch of event.changedTouches) {
      const finger = fingers.get(touch.identifier);
      if (!finger) continue;
      Object.assign(finger, {touch, x: touch.clientX, y: touch.clientY});
      if (event.type === 'touchmove') {
        send('pointermove', finger, event);
        whenHeard(finger, event);
        continue;
      }
      last = {x: finger.x, y: finger.y, until: event.timeStamp + echo, isMuted: finger.isMuted};
      end(event.type === 'touchend' ? 'pointerup' : 'pointercancel', finger, event);
    }
  };
  addEventListener('touchstart', (event) => {
    for (const touch of event.changedTouches) {
      const {identifier, target, clientX: x, clientY: y} = touch;
      const finger = {id: nextId++, touch, x, y, startX: x, startY: y, start: target, isStill: true,
                      isPrimary: fingers.size === 0};
      fingers.set(identifier, finger);
      // At the target: it may leave the document before the finger does.
      for (const type of ['touchmove', 'touchend', 'touchcancel']) {
        target.addEventListener(type, moved, {capture: true, passive: false});
      }
      cross(['pointerover', 'pointerenter'], finger, event);
      hold(finger, target);
      finger.isMuted = !send('pointerdown', finger, event);
      whenHeard(finger, event);
    }
  }, {capture: true, passive: false});

  const isEcho = (event) => fingers.size > 0 || (event.timeStamp < last.until &&
      Math.abs(event.clientX - last.x) <= 1 && Math.abs(event.clientY - last.y) <= 1);
  for (const type of ['down', 'up', 'move', 'cancel', 'over', 'out', 'enter', 'leave']) {
    addEventListener('pointer' + type, (event) => {
      if (!event.isTrusted) return;
      if (event.pointerType === 'touch' || (event.pointerType === 'mouse' && isEcho(event))) event.stopImmediatePropagation();
    }, true);
  }
  // A prevented pointerdown keeps the mouse's events of its tap away, too.
  for (const type of ['mousedown', 'mouseup']) {
    addEventListener(type, (event) => {
      if (!event.isTrusted || !last.isMuted || !isEcho(event)) return;
      event.stopImmediatePropagation();
      event.preventDefault();
    }, true);
  }
  // Whoever takes a finger from the page cancels its pointer.
  addEventListener('pointercancel', (event) => {
    const finger = event.isTrusted ? undefined : find(event.pointerId);
    if (finger) fingers.delete(finger.touch.identifier);
  }, true);

  const wrap = (name, ours) => {
    const theirs = Element.prototype[name];
    Element.prototype[name] = {[name](id) {
      const finger = find(id);
      return finger ? ours(this, finger) : theirs.call(this, id);
    }}[name];
  };
  wrap('setPointerCapture', (element, finger) => hold(finger, element));
  wrap('releasePointerCapture', (element, finger) => finger.holder === element ? hold(finger, null) : undefined);
  wrap('hasPointerCapture', (element, finger) => finger.holder === element);
})();
)js";

constexpr const char* takenPointers = R"js(
{
  const down = new Map();
  const forget = (event) => down.delete(event.pointerId);
  addEventListener("pointerdown", (event) => {
    // Newer WebKit's own fingers, of which the page hears nothing: it gets ours.
    if (event.isTrusted && event.pointerType === "touch") return;
    down.set(event.pointerId, [event.composedPath()[0], event]);
  }, true);
  addEventListener("pointerup", forget, true);
  addEventListener("pointercancel", forget, true);
  addEventListener("orivexpointerstaken", () => {
    for (const [target, { pointerId, pointerType, isPrimary, clientX, clientY }] of [...down.values()]) {
      const details = { pointerId, pointerType, isPrimary, clientX, clientY, bubbles: true, composed: true };
      target.dispatchEvent(new PointerEvent("pointercancel", details));
    }
    down.clear();
  });
}
)js";

// The verdict comes after the last of the page's own listeners. In a field the arrow would move the caret, natively.
constexpr const char* backKeys = R"js(
const leadsBack = (event) => event.isTrusted && !event.isComposing && !event.ctrlKey && !event.shiftKey &&
    !event.metaKey && (event.altKey ? event.key === 'ArrowLeft' : ['Escape', 'BrowserBack'].includes(event.key));
const judge = (event) => {
  if (event.defaultPrevented || !leadsBack(event)) return;
  if (event.key === 'Escape' && document.querySelector('dialog:modal, [popover]:popover-open')) return;
  event.preventDefault();
  webkit.messageHandlers.backKey.postMessage(null);
};
addEventListener('keydown', () => addEventListener('keydown', judge, {once: true}), true);
)js";

}  // namespace

void addTouchPointers(WebKitUserContentManager* content) {
  addPageScript(content, touchPointers, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES);
}

void addTakenPointers(WebKitUserContentManager* content) {
  // A world of its own: the page sees what the script does and not what it holds.
  addPageScript(content, takenPointers, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME, "orivex");
}

SignalConnection addBackKeys(WebKitWebView* view) {
  constexpr const char* world = "OrivexSDKKeys";  // its own: the page can neither see nor undo nor forge it
  auto* const content = webkit_web_view_get_user_content_manager(view);
  auto pressed = SignalConnection::connect(content, "script-message-received::backKey", [view] {
    gtk_widget_activate_action(GTK_WIDGET(view), "screens.back", nullptr);
  });
  webkit_user_content_manager_register_script_message_handler(content, "backKey", world);
  addPageScript(content, backKeys, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES, world);
  return pressed;
}

}  // namespace orivex::gtk

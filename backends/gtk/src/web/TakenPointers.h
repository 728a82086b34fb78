#pragma once

namespace orivex::gtk {

/// The world of scripts in which it runs: the page sees what it does and not what it holds.
inline constexpr const char* takenPointersWorld = "orivex";

/// Remembers the pointers that are down in a page, and cancels them when `pointersTakenScript` says so. WebKit does
/// not: it hears no more of a pointer once another widget has claimed it.
inline constexpr const char* takenPointersScript = R"js(
{
  const down = new Map();
  const forget = (event) => down.delete(event.pointerId);
  addEventListener("pointerdown", (event) => down.set(event.pointerId, [event.composedPath()[0], event]), true);
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

}  // namespace orivex::gtk

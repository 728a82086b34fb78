#include "TakenPointers.h"

#include "PageScript.h"

namespace orivex::gtk {
namespace {

// A world of scripts of our own: the page sees what it does and not what it holds.
constexpr const char* world = "orivex";

constexpr const char* script = R"js(
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

}  // namespace

void addTakenPointersScript(WebKitUserContentManager* content) {
  addPageScript(content, script, world, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
}

}  // namespace orivex::gtk

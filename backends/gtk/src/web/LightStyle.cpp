#include "LightStyle.h"

#include <memory>

#include "../FreeWith.h"
#include "PageScript.h"

namespace orivex::gtk {
namespace {

constexpr const char* style = ":root { color-scheme: only light !important; }";

// A question about the preference becomes one that every page answers in the same way, so that lists of several
// conditions and listeners work as ever.
constexpr const char* script = R"js(
(() => {
  const match = window.matchMedia;
  const preference = /\(\s*prefers-color-scheme\s*(?::\s*(light|dark)\s*)?\)/gi;
  window.matchMedia = function matchMedia(query) {
    const asked = String(query);
    const list = match.call(this, asked.replace(preference,
        (whole, value) => value && value.toLowerCase() === 'dark' ? '(max-width: -1px)' : '(min-width: 0px)'));
    return Object.defineProperty(list, 'media', {value: asked});
  };
})();
)js";

using StyleSheet = std::unique_ptr<WebKitUserStyleSheet, FreeWith<webkit_user_style_sheet_unref>>;

}  // namespace

void addStyle(WebKitUserContentManager* content, const char* css, WebKitUserContentInjectedFrames frames) {
  const StyleSheet sheet(webkit_user_style_sheet_new(css, frames, WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr));
  webkit_user_content_manager_add_style_sheet(content, sheet.get());
}

void addLightStyle(WebKitUserContentManager* content) {
  addStyle(content, style, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES);
}

void addLightScript(WebKitUserContentManager* content) {
  addPageScript(content, script, nullptr, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
}

}  // namespace orivex::gtk

#include "PageScripts.h"

#include <algorithm>
#include <iterator>

namespace orivex::gtk {
namespace {

constexpr const char* lightStyle = ":root { color-scheme: only light !important; }";

// A question about the preference becomes one that every page answers in the same way, so that lists of several
// conditions and listeners work as ever.
constexpr const char* lightScript = R"js(
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

// Before the page's first script, which therefore cannot change what this uses. The copy has neither getters nor
// proxies, which could show one value here and another to WebKit, and the page does not have it.
constexpr const char* messageLimit = R"js(
((name) => {
  const handlers = webkit.messageHandlers;
  const handler = handlers[name];
  if (!handler) return;
  const [mostValues, mostLetters] = [10000, 8 << 20];
  // The main thread's time in microseconds, as measured: a page may take half a second at once, a fifth in the long
  // run. The message that takes the last of it may be a long one.
  const [mostTime, timeInAMillisecond] = [500000, 200];
  const timeFor = (values, letters) => 25 + 2 * values + letters / 50;
  const { getPrototypeOf } = Object;
  const apply = Reflect.apply;
  const isOwn = Object.prototype.hasOwnProperty;
  const [eachOfMap, eachOfSet] = [Map.prototype.forEach, Set.prototype.forEach];
  const [mapPrototype, setPrototype] = [Map.prototype, Set.prototype];
  const Refusal = RangeError;
  const copyOf = structuredClone;
  const now = Date.now;
  let left = mostTime;
  let last = now();
  const take = (time) => {
    const elapsed = now() - last;
    last += elapsed;
    if (elapsed > 0) left += elapsed * timeInAMillisecond;
    if (left > mostTime) left = mostTime;
    if (left < 0) throw new Refusal("Too many messages");
    left -= time;
  };
  const check = (copy) => {
    let values = 0;
    let letters = 0;
    let next = null;
    const add = (value) => {
      if (++values > mostValues) throw new Refusal("The message is too large");
      if (typeof value === "string") letters += value.length;
      if (letters > mostLetters) throw new Refusal("The message is too large");
      if (typeof value === "object" && value !== null) next = { value, next };
    };
    const addBoth = (value, key) => (add(key), add(value));
    for (add(copy); next; ) {
      const { value } = next;
      next = next.next;
      for (const key in value) {
        if (!apply(isOwn, value, [key])) continue;
        letters += key.length;
        add(value[key]);
      }
      const prototype = getPrototypeOf(value);
      if (prototype === mapPrototype) apply(eachOfMap, value, [addBoth]);
      if (prototype === setPrototype) apply(eachOfSet, value, [addBoth]);
    }
    take(timeFor(values, letters));
  };
  const post = handler.postMessage;
  const value = function postMessage(...bodies) {
    if (bodies.length > 0) check((bodies[0] = copyOf(bodies[0])));
    return apply(post, this, bodies);
  };
  Object.defineProperty(getPrototypeOf(handler), "postMessage", { value, enumerable: true });
  // The getter would give a page the handlers of its frames, on which nobody has put this.
  Object.defineProperty(getPrototypeOf(webkit), "messageHandlers", { value: handlers });
})
)js";

// WebKit's patterns know no ports, and match nothing when they name one.
std::string addressPattern(const std::string& origin) {
  const auto port = origin.find_last_of(":]");
  const bool hasPort = port != std::string::npos && origin[port] == ':' && !origin.substr(port).starts_with("://");
  return origin.substr(0, hasPort ? port : std::string::npos) + "/*";
}

}  // namespace

void addPageScript(WebKitUserContentManager* content, const char* source, WebKitUserContentInjectedFrames frames,
                   const char* world) {
  constexpr auto time = WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START;
  const AddedScript script(world ? webkit_user_script_new_for_world(source, frames, time, world, nullptr, nullptr)
                                 : webkit_user_script_new(source, frames, time, nullptr, nullptr));
  webkit_user_content_manager_add_script(content, script.get());
}

AddedScript addUserScript(WebKitUserContentManager* content, const std::string& script,
                          const std::vector<std::string>& origins) {
  std::vector<std::string> patterns;
  std::transform(origins.begin(), origins.end(), std::back_inserter(patterns), addressPattern);
  std::vector<const char*> allowed(patterns.size() + 1);  // ends with a null
  std::transform(patterns.begin(), patterns.end(), allowed.begin(), [](const auto& text) { return text.c_str(); });
  AddedScript added(webkit_user_script_new(script.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                                           WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START,
                                           origins.empty() ? nullptr : allowed.data(), nullptr));
  webkit_user_content_manager_add_script(content, added.get());
  return added;
}

void addPageStyle(WebKitUserContentManager* content, const char* css, WebKitUserContentInjectedFrames frames) {
  const std::unique_ptr<WebKitUserStyleSheet, FreeWith<webkit_user_style_sheet_unref>> sheet(
      webkit_user_style_sheet_new(css, frames, WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr));
  webkit_user_content_manager_add_style_sheet(content, sheet.get());
}

void addMessageLimit(WebKitUserContentManager* content, const std::vector<std::string>& names) {
  if (names.empty()) return;  // all handlers share one prototype
  const auto call = messageLimit + ("(\"" + names.front() + "\")");
  addPageScript(content, call.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
}

void addLightStyle(WebKitUserContentManager* content) {
  addPageStyle(content, lightStyle, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES);
}

void addLightScript(WebKitUserContentManager* content) {
  addPageScript(content, lightScript, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
}

}  // namespace orivex::gtk

#include "MessageLimit.h"

#include <memory>

#include "../FreeWith.h"

namespace orivex::gtk {
namespace {

// Before the page's first script, which therefore cannot change what this uses. The copy has neither getters nor
// proxies, which could show one value here and another to WebKit, and the page does not have it.
constexpr const char* script = R"js(
((name) => {
  const handler = webkit.messageHandlers[name];
  if (!handler) return;
  const [mostValues, mostLetters] = [10000, 8 << 20];
  const { getPrototypeOf } = Object;
  const apply = Reflect.apply;
  const isOwn = Object.prototype.hasOwnProperty;
  const [eachOfMap, eachOfSet] = [Map.prototype.forEach, Set.prototype.forEach];
  const [mapPrototype, setPrototype] = [Map.prototype, Set.prototype];
  const Refusal = RangeError;
  const copyOf = structuredClone;
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
  };
  const post = handler.postMessage;
  const value = function postMessage(...bodies) {
    if (bodies.length > 0) check((bodies[0] = copyOf(bodies[0])));
    return apply(post, this, bodies);
  };
  Object.defineProperty(getPrototypeOf(handler), "postMessage", { value, enumerable: true });
})
)js";

}  // namespace

void addMessageLimit(WebKitUserContentManager* content, const std::vector<std::string>& names) {
  if (names.empty()) return;  // all handlers share one prototype
  const auto call = script + ("(\"" + names.front() + "\")");
  const std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>> made(
      webkit_user_script_new(call.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                             WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr));
  webkit_user_content_manager_add_script(content, made.get());
}

}  // namespace orivex::gtk

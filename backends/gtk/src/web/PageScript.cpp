#include "PageScript.h"

#include <memory>

#include "../FreeWith.h"

namespace orivex::gtk {

void addPageScript(WebKitUserContentManager* content, const char* source, const char* world,
                   WebKitUserContentInjectedFrames frames) {
  constexpr auto time = WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START;
  const std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>> script(
      world ? webkit_user_script_new_for_world(source, frames, time, world, nullptr, nullptr)
            : webkit_user_script_new(source, frames, time, nullptr, nullptr));
  webkit_user_content_manager_add_script(content, script.get());
}

}  // namespace orivex::gtk

#include "WebProcessContext.h"

#include <filesystem>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

WebProcessContext::WebProcessContext(const std::string& moduleFolder)
    : context_(GRef<WebKitWebContext>::adopt(webkit_web_context_new())) {
  // The model of browsers keeps the processes of closed pages for the next visit; a host wants its memory back.
  webkit_web_context_set_cache_model(context_.get(), WEBKIT_CACHE_MODEL_DOCUMENT_BROWSER);
  std::error_code error;
  if (!std::filesystem::is_directory(moduleFolder, error)) {
    log::print("Pages keep the web engine's user agent, and their frames can post: there is no folder " + moduleFolder);
    return;
  }
  // Before the first process starts: its sandbox shows it this folder only when it was known by then.
  webkit_web_context_set_web_process_extensions_directory(context_.get(), moduleFolder.c_str());
  processStarts_ = SignalConnection::connect<&WebProcessContext::processStarts>(
      context_.get(), "initialize-web-process-extensions", this);
}

void WebProcessContext::processStarts(WebKitWebContext* context) {
  webkit_web_context_set_web_process_extensions_initialization_user_data(context,
                                                                         g_variant_new_string(userAgent_.c_str()));
}

}  // namespace orivex::gtk

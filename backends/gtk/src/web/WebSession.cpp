#include "WebSession.h"

#include <cstring>
#include <filesystem>
#include <optional>

#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr mode_t ownerOnly = 0700;

std::string folderIn(const char* base, const std::string& application) {
  return GCharPtr(g_build_filename(base, "orivex-sdk", application.c_str(), "web", nullptr)).get();
}

// WebKit itself makes its folders readable for everyone, and what lies in them may hold tokens.
std::optional<std::string> madePrivate(std::string folder) {
  const bool made = g_mkdir_with_parents(folder.c_str(), ownerOnly) == 0 && chmod(folder.c_str(), ownerOnly) == 0;
  if (made && access(folder.c_str(), W_OK | X_OK) == 0) return folder;
  log::warning("Pages leave nothing on the disk: no folder " + folder + ": " + std::strerror(errno));
  return std::nullopt;
}

}  // namespace

GRef<WebKitNetworkSession> makeWebSession(const std::string& application) {
  const auto data = madePrivate(webDataFolder(application));
  const auto cache = madePrivate(folderIn(g_get_user_cache_dir(), application));
  auto* const session = data && cache ? webkit_network_session_new(data->c_str(), cache->c_str())
                                      : webkit_network_session_new_ephemeral();
  return GRef<WebKitNetworkSession>::adopt(session);
}

std::string webDataFolder(const std::string& application) {
  return folderIn(g_get_user_data_dir(), application);
}

WebProcessContext::WebProcessContext(const std::string& moduleFolder)
    : context_(GRef<WebKitWebContext>::adopt(webkit_web_context_new())) {
  // The model of browsers keeps the processes of closed pages for the next visit; a host wants its memory back.
  webkit_web_context_set_cache_model(get(), WEBKIT_CACHE_MODEL_DOCUMENT_BROWSER);
  std::error_code error;
  if (!std::filesystem::is_directory(moduleFolder, error)) {
    log::warning("Pages keep the web engine's user agent, and their frames can post: there is no folder " +
                 moduleFolder);
    return;
  }
  // Before the first process starts: its sandbox shows it this folder only when it was known by then.
  webkit_web_context_set_web_process_extensions_directory(get(), moduleFolder.c_str());
  processStarts_ = SignalConnection::connect(get(), "initialize-web-process-extensions", [this] {
    webkit_web_context_set_web_process_extensions_initialization_user_data(
        get(), g_variant_new("(sb)", userAgent_.c_str(), log::isEnabled(log::Level::debug)));
  });
}

}  // namespace orivex::gtk

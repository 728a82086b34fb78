#include "WebSession.h"

#include <cstring>
#include <optional>

#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr mode_t ownerOnly = 0700;

// WebKit itself makes its folders readable for everyone, and what lies in them may hold tokens.
std::optional<std::string> privateFolder(const char* base, const std::string& application) {
  const GCharPtr folder(g_build_filename(base, "orivex-sdk", application.c_str(), "web", nullptr));
  const bool made = g_mkdir_with_parents(folder.get(), ownerOnly) == 0 && chmod(folder.get(), ownerOnly) == 0;
  if (made && access(folder.get(), W_OK | X_OK) == 0) return folder.get();
  log::print(std::string("Pages leave nothing on the disk: no folder ") + folder.get() + ": " + std::strerror(errno));
  return std::nullopt;
}

}  // namespace

GRef<WebKitNetworkSession> makeWebSession(const std::string& application) {
  const auto data = privateFolder(g_get_user_data_dir(), application);
  const auto cache = privateFolder(g_get_user_cache_dir(), application);
  auto* const session = data && cache ? webkit_network_session_new(data->c_str(), cache->c_str())
                                      : webkit_network_session_new_ephemeral();
  return GRef<WebKitNetworkSession>::adopt(session);
}

}  // namespace orivex::gtk

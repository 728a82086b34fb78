#pragma once

#include <string>

#include <webkit/webkit.h>

#include "../glib/GRef.h"

namespace orivex::gtk {

/// The web session of the component's pages in one application: their cookies, storage and caches are apart from the
/// host's web views and from other applications, in folders under `application` that only the visitor may enter. Where
/// such a folder cannot be had, the session leaves nothing on the disk, with one log line.
[[nodiscard]] GRef<WebKitNetworkSession> makeWebSession(const std::string& application);

/// Where such a session keeps what it does not cache.
std::string webDataFolder(const std::string& application);

}  // namespace orivex::gtk

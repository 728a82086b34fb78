#pragma once

#include <string>

#include <curl/curl.h>

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {

/// What a visitor may read about a transfer that ended with `code`.
std::string transportWords(CURLcode code);

/// The same for one that a proxy did not let through without a name and a password.
inline constexpr const char* proxyWantsCredentials = trLater("代理服务器需要身份验证");

}  // namespace orivex::gtk

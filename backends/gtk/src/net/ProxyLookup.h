#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>

#include "../glib/GRef.h"

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// Asks which proxy leads to an address. Page loads ask the same: the desktop's settings with their exceptions and
/// scripts, or, where no desktop has any, the environment variables.
class ProxyLookup {
 public:
  /// Without a resolver the desktop's own is asked.
  explicit ProxyLookup(GRef<GProxyResolver> resolver = nullptr) : resolver_(std::move(resolver)) {}

  /// The proxies to try in this order, in libcurl's words, "" for none. None at all when the question could not be
  /// answered; nothing when it was not within `seconds`.
  using Proxies = std::optional<std::vector<std::string>>;

  /// Main thread; `completion` comes there too, exactly once and not inside this call.
  void find(const std::string& address, double seconds, Once<void(Proxies)> completion) const;

 private:
  GRef<GProxyResolver> resolver_;
};

}  // namespace orivex::gtk

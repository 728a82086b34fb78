#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "orivex/platform/base/Url.h"

namespace orivex::gtk {

/// Hands addresses to the visitor's other applications. The addresses come from pages, so only those of schemes that
/// lead out of the device are handed on: http, https, mailto (without attachments), tel, sms and geo. Main thread.
class DesktopLauncher {
 public:
  /// Lets addresses of a further scheme through.
  void allow(std::string scheme) { schemes_.insert(std::move(scheme)); }

  /// Whether such an address may be handed on and the desktop has a default application for its scheme. In a sandbox
  /// the desktop does not say: there every scheme that is let through counts as openable.
  bool canOpen(const Url& url) const;

  /// Opens the address in that application, through the desktop's portal in a sandbox; one a second, others are
  /// dropped. A failure, and an address that is not let through or comes too soon, is one log line.
  void open(const Url& url);

 private:
  bool isAllowed(const Url& url) const;

  std::set<std::string, std::less<>> schemes_{"http", "https", "mailto", "tel", "sms", "geo"};
  std::optional<std::int64_t> lastOpened_;  // microseconds of GLib's clock
};

}  // namespace orivex::gtk

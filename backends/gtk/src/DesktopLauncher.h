#pragma once

#include "orivex/platform/base/Url.h"

namespace orivex::gtk {

/// Hands addresses to the visitor's other applications. Main thread.
class DesktopLauncher {
 public:
  /// Whether the desktop has a default application for the address's scheme or, for a file, for its content. In a
  /// sandbox the desktop does not say: there the usual schemes of links count as openable.
  bool canOpen(const Url& url) const;

  /// Opens the address in that application, through the desktop's portal in a sandbox. A failure is one log line.
  void open(const Url& url) const;
};

}  // namespace orivex::gtk

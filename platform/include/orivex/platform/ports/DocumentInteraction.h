#pragma once

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class View;

/// The device's menu of applications that open a file.
class DocumentInteraction {
 public:
  DocumentInteraction() = default;
  DocumentInteraction(const DocumentInteraction&) = delete;
  DocumentInteraction& operator=(const DocumentInteraction&) = delete;
  virtual ~DocumentInteraction() = default;

  /// Shows the menu for `file`, a web address, from `rect` of `view`, until its screen leaves. False when no
  /// application opens such files, and for an address that is not of the web: what lies on the device is no business of
  /// a page's. Nothing is shown then. Main thread.
  virtual bool presentOptionsMenu(const Url& file, const Rect& rect, View& view) = 0;
};

}  // namespace orivex

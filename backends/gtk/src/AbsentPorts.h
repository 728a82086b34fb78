#pragma once

#include "orivex/platform/ports/DocumentInteraction.h"

/// Ports of devices that this backend does not reach yet: each answers as a device that lacks them.
namespace orivex::gtk {

class AbsentDocumentInteraction final : public DocumentInteraction {
 public:
  bool presentOptionsMenu(const Url&, const Rect&, View&) override { return false; }
};

}  // namespace orivex::gtk

#pragma once

#include "orivex/platform/ports/DocumentInteraction.h"
#include "orivex/platform/ports/PhotoLibrary.h"

/// Ports of devices that this backend does not reach yet: each answers as a device that lacks them.
namespace orivex::gtk {

class AbsentDocumentInteraction final : public DocumentInteraction {
 public:
  bool presentOptionsMenu(const Url&, const Rect&, View&) override { return false; }
};

class AbsentPhotoLibrary final : public PhotoLibrary {
 public:
  void show(const PhotoLibraryOptions&, View&, Once<void(PhotoSelection)>) override {}
};

}  // namespace orivex::gtk

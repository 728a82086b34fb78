#pragma once

#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/DocumentInteraction.h"
#include "orivex/platform/ports/DocumentPicker.h"
#include "orivex/platform/ports/PhotoLibrary.h"

/// Ports of devices that this backend does not reach yet: each answers as a device that lacks them.
namespace orivex::gtk {

class AbsentDocumentPicker final : public DocumentPicker {
 public:
  void present(const DocumentPickerOptions&, View&, Once<void(DocumentPickerOutcome)>) override {}
  std::variant<std::unique_ptr<FileAccess>, Failure> startAccess(const Url&) override { return Failure{"no picker"}; }
};

class AbsentDocumentInteraction final : public DocumentInteraction {
 public:
  bool presentOptionsMenu(const Url&, const Rect&, View&) override { return false; }
};

class AbsentPhotoLibrary final : public PhotoLibrary {
 public:
  void show(const PhotoLibraryOptions&, View&, Once<void(PhotoSelection)>) override {}
};

class AbsentCamera final : public Camera {
 public:
  void present(const CameraOptions&, View&, Once<void(CameraOutcome)>) override {}
};

}  // namespace orivex::gtk

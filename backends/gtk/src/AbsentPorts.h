#pragma once

#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/DocumentInteraction.h"
#include "orivex/platform/ports/DocumentPicker.h"
#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ports/MediaProbe.h"
#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/platform/ports/RecordPermission.h"

/// Ports of devices that this backend does not reach yet: each answers as a device that lacks them.
namespace orivex::gtk {

class AbsentFileManager final : public FileManager {
 public:
  std::optional<Url> documentDirectory() override { return std::nullopt; }
  std::optional<Failure> removeItem(const Url&) override { return Failure{"no file manager"}; }
};

class AbsentMediaProbe final : public MediaProbe {
 public:
  std::variant<VideoFacts, Failure> probeVideo(const std::string&) const override { return Failure{"no probe"}; }
};

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

class AbsentAudioSession final : public AudioSession {
 public:
  std::optional<Failure> setCategory(AudioSessionCategory, AudioSessionMode) override { return Failure{"no sound"}; }
  std::optional<Failure> setActive(bool) override { return Failure{"no sound"}; }
  std::variant<std::unique_ptr<AudioRecorder>, Failure> makeRecorder(const Url&, const AudioSettings&) override {
    return Failure{"no sound"};
  }
  std::variant<std::unique_ptr<AudioPlayer>, Failure> makePlayer(const Url&) override { return Failure{"no sound"}; }
};

class AbsentRecordPermission final : public RecordPermission {
 public:
  void request(const std::string&, Once<void(bool)>) override {}
};

}  // namespace orivex::gtk

#pragma once

#include <optional>

#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::testing {

/// A sheet that a test answers.
class VirtualPhotoLibrary final : public PhotoLibrary {
 public:
  explicit VirtualPhotoLibrary(MainQueue& queue) : queue_(queue) {}

  void show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) override;

  /// Of the open sheet; nothing when none is open.
  const std::optional<PhotoLibraryOptions>& shown() const { return shown_; }

  /// The visitor's answer: closes the sheet; a selection calls back from the queue.
  void select(PhotoSelection selection);
  void close();

 private:
  MainQueue& queue_;
  std::optional<PhotoLibraryOptions> shown_;
  Once<void(PhotoSelection)> selected_;
  Subscription leaves_;
};

}  // namespace orivex::testing

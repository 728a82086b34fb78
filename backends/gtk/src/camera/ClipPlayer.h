#pragma once

#include <memory>
#include <string>

#include "CameraThreads.h"
#include "FrameFeed.h"
#include "Pipeline.h"

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

/// Plays a clip over and over, with its sound, for as long as it lives. Main thread.
class ClipPlayer {
 public:
  /// `area`: pixels of where the picture is shown. A clip that cannot be played is one log line.
  ClipPlayer(CameraThreads threads, const std::string& path, Size area, FrameFeed::Show show);
  ClipPlayer(const ClipPlayer&) = delete;
  ClipPlayer& operator=(const ClipPlayer&) = delete;
  ~ClipPlayer();

 private:
  void again();

  std::shared_ptr<FrameFeed> feed_;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace orivex::gtk

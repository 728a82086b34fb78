#pragma once

#include <functional>
#include <memory>
#include <string>

#include "FrameFeed.h"
#include "Pipeline.h"

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

/// Plays a clip, with its sound, for as long as it lives. Main thread.
class ClipPlayer {
 public:
  struct Handlers {
    FrameFeed::Show show;
    std::function<void()> ended;
    std::function<void()> failed;  ///< the clip cannot be played, and the log says why; may destroy the player
  };

  /// `area`: pixels of where the picture is shown.
  ClipPlayer(PipelineThreads threads, const std::string& path, Size area, Handlers handlers);
  ClipPlayer(const ClipPlayer&) = delete;
  ClipPlayer& operator=(const ClipPlayer&) = delete;
  ~ClipPlayer();

  /// Plays the clip from its beginning.
  void restart();

 private:
  std::shared_ptr<FrameFeed> feed_;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace orivex::gtk

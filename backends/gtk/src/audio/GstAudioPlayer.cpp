#include "GstAudioPlayer.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

bool GstAudioPlayer::play() {
  stop();
  playing_ = std::make_shared<std::atomic<bool>>(true);
  const auto make = [address = address_]() -> PipelineRun::Made {
    auto player = GRef<GstElement>::sink(gst_element_factory_make("playbin", nullptr));
    if (!player) return Failure{"GStreamer has no playbin"};
    // A file that holds a film as well is only listened to.
    g_object_set(player.get(), "uri", address.c_str(), "video-sink", gst_element_factory_make("fakesink", nullptr),
                 nullptr);
    return player;
  };
  run_ = PipelineRun::start(workers_, make, [playing = playing_](std::optional<Failure> failure) {
    *playing = false;
    if (failure) log::print("Playing ended: " + failure->description);
  });
  return true;
}

void GstAudioPlayer::stop() {
  if (run_) run_->stop();
  if (playing_) *playing_ = false;
}

}  // namespace orivex::gtk

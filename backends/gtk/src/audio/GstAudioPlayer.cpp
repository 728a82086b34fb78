#include "GstAudioPlayer.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

bool GstAudioPlayer::play() {
  const auto build = [address = address_]() -> ElementOrError {
    auto player = GRef<GstElement>::sink(gst_element_factory_make("playbin", nullptr));
    if (!player) return pipelineError("GStreamer has no playbin");
    // A file that holds a film as well is only listened to.
    g_object_set(player.get(), "uri", address.c_str(), "video-sink", gst_element_factory_make("fakesink", nullptr),
                 nullptr);
    return player;
  };
  pipeline_ = std::make_unique<Pipeline>(threads_, build,
                                         Pipeline::Handlers{.ended = [this] { stop(); },
                                                            .failed =
                                                                [this](const PipelineError& error) {
                                                                  log::print("Playing ended: " + error.text);
                                                                  stop();
                                                                },
                                                            .needsDevice = true});
  return true;
}

}  // namespace orivex::gtk

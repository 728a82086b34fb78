#include "ClipPlayer.h"

#include <utility>

#include <gst/gst.h>

#include "../glib/GMemory.h"
#include "VideoContainer.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// playbin's flags; pictures come as they are decoded, so that a size which is refused takes no memory.
constexpr int pictureAndSound = 0x3 | 0x40;

// A file that was harmless at first may ask for any size later. Sixteen frames of this, which is as many as decoders
// keep, take 512 MiB.
constexpr const char* largestFrames =
    "capsfilter caps=\"video/x-raw(ANY),width=[1,6144],height=[1,3456];"
    "video/x-raw(ANY),width=[1,3456],height=[1,6144]\" ! ";

ElementOrError build(const std::string& path, Size area, const std::shared_ptr<FrameFeed>& feed) {
  if (!isVideoContainer(path)) return pipelineError(path + " is not a video");
  auto player = GRef<GstElement>::sink(gst_element_factory_make("playbin", nullptr));
  if (!player) return pipelineError("no player is installed");
  auto made = parseBin(largestFrames + FrameFeed::branch(true));
  if (std::holds_alternative<PipelineError>(made)) return made;
  auto* const sink = std::get<GRef<GstElement>>(made).get();
  feed->connect(*sink, area, false);
  const GCharPtr address(g_filename_to_uri(path.c_str(), nullptr, nullptr));
  g_object_set(player.get(), "uri", address.get(), "video-sink", sink, "flags", pictureAndSound, nullptr);
  return player;
}

}  // namespace

ClipPlayer::ClipPlayer(PipelineThreads threads, const std::string& path, Size area, Handlers handlers)
    : feed_(std::make_shared<FrameFeed>(threads.main, std::move(handlers.show))) {
  pipeline_ = std::make_unique<Pipeline>(
      threads, [path, area, feed = feed_] { return build(path, area, feed); },
      Pipeline::Handlers{.ended = std::move(handlers.ended),
                         .failed = [failed = std::move(handlers.failed)](const PipelineError& error) {
                           log::warning("The video cannot be shown: " + error.text);
                           failed();
                         }});
}

ClipPlayer::~ClipPlayer() {
  feed_->close();
}

void ClipPlayer::restart() {
  pipeline_->run([](GstElement& player) {
    gst_element_seek_simple(&player, GST_FORMAT_TIME,
                            static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_KEY_UNIT), 0);
  });
}

}  // namespace orivex::gtk

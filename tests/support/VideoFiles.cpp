#include "VideoFiles.h"

#include <array>
#include <fstream>
#include <iterator>
#include <memory>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {

void writeMedia(const std::filesystem::path& path, const std::string& pipeline) {
  gst_init(nullptr, nullptr);
  const auto description = pipeline + " ! filesink location=\"" + path.string() + "\"";
  const auto running = GRef<GstElement>::sink(gst_parse_launch(description.c_str(), nullptr));
  ASSERT_TRUE(running) << description;
  gst_element_set_state(running.get(), GST_STATE_PLAYING);
  const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(running.get()));
  constexpr auto endings = GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
  const std::unique_ptr<GstMessage, FreeWith<gst_message_unref>> message(
      gst_bus_timed_pop_filtered(bus.get(), 20 * GST_SECOND, endings));
  gst_element_set_state(running.get(), GST_STATE_NULL);
  ASSERT_TRUE(message && GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS) << description;
}

std::string testVideo() {
  return "videotestsrc num-buffers=50 pattern=gradient ! video/x-raw,width=320,height=240,framerate=25/1 ! "
         "videoconvert ! x264enc speed-preset=ultrafast ! mp4mux";
}

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void turnVideo(const std::filesystem::path& path, int degrees) {
  constexpr std::size_t matrixOffset = 44;  // of the track header of version 0
  constexpr std::array<std::array<char, 4>, 4> turns{{{1, 0, 0, 1}, {0, 1, -1, 0}, {-1, 0, 0, -1}, {0, -1, 1, 0}}};
  std::string bytes = contentsOf(path);
  const auto matrix = bytes.find("tkhd") + matrixOffset;
  constexpr std::array<std::size_t, 4> places{0, 4, 12, 16};  // 16.16 numbers, in rows of three
  for (std::size_t index = 0; index < places.size(); ++index) {
    const char whole = turns[static_cast<std::size_t>(degrees / 90)][index];
    bytes.replace(matrix + places[index], 4, {static_cast<char>(whole < 0 ? -1 : 0), whole, 0, 0});
  }
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace orivex::gtk

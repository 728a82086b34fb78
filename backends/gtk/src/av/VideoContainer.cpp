#include "VideoContainer.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <variant>

#include "../pictures/RegularFile.h"

namespace orivex::gtk {
namespace {

using namespace std::string_view_literals;

struct Mark {
  std::size_t offset;
  std::string_view bytes;
};

constexpr std::array<Mark, 12> marks{{
    {4, "ftyp"sv},  // MP4, 3GP, QuickTime, and QuickTime before it had a type
    {4, "moov"sv},
    {4, "mdat"sv},
    {4, "wide"sv},
    {4, "free"sv},
    {4, "skip"sv},
    {0, "\x1A\x45\xDF\xA3"sv},                  // Matroska, WebM
    {8, "AVI "sv},                              // in RIFF
    {0, "FLV\x01"sv},                           // Flash video
    {0, "OggS"sv},                              // Ogg
    {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11"sv},  // ASF, WMV
    {0, "\0\0\x01\xBA"sv},                      // MPEG program stream
}};

// Packets of an MPEG transport stream begin with the same byte; those of cameras have a time in front.
bool isTransportStream(std::string_view head) {
  constexpr char sync = 0x47;
  constexpr std::array<std::array<std::size_t, 2>, 2> layouts{{{0, 188}, {4, 192}}};
  return std::any_of(layouts.begin(), layouts.end(), [&](const auto& layout) {
    const auto [first, length] = layout;
    return head.size() > first + 3 * length && head[first] == sync && head[first + length] == sync &&
           head[first + 2 * length] == sync && head[first + 3 * length] == sync;
  });
}

}  // namespace

bool isVideoContainer(const std::string& path) {
  const auto opened = openRegularFile(path);
  const auto* const file = std::get_if<FilePtr>(&opened);
  if (!file) return false;
  std::array<char, 1024> bytes{};
  const std::string_view head(bytes.data(), std::fread(bytes.data(), 1, bytes.size(), file->get()));
  return isTransportStream(head) || std::any_of(marks.begin(), marks.end(), [&](const Mark& mark) {
           return head.substr(std::min(mark.offset, head.size())).starts_with(mark.bytes);
         });
}

}  // namespace orivex::gtk

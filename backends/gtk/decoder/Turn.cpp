#include "Turn.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace orivex::gtk {
namespace {

/// Numbers of a TIFF structure, in its own byte order; nothing beyond its end.
class TiffReader {
 public:
  explicit TiffReader(std::span<const std::uint8_t> bytes)
      : bytes_(bytes), littleEndian_(!bytes.empty() && bytes[0] == 'I') {}

  std::optional<std::uint32_t> number(std::size_t offset, std::size_t size) const {
    if (offset > bytes_.size() || bytes_.size() - offset < size) return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < size; ++index) {
      value = value << 8U | bytes_[offset + (littleEndian_ ? size - 1 - index : index)];
    }
    return value;
  }

 private:
  std::span<const std::uint8_t> bytes_;
  bool littleEndian_;
};

std::optional<int> orientationOfTiff(std::span<const std::uint8_t> bytes) {
  constexpr std::uint32_t magic = 42;
  constexpr std::uint32_t orientationTag = 0x0112;
  constexpr std::size_t entryBytes = 12;
  constexpr std::size_t valueOffset = 8;
  const TiffReader reader(bytes);
  if (reader.number(2, 2) != magic) return std::nullopt;
  const auto directory = reader.number(4, 4);
  const auto count = directory ? reader.number(*directory, 2) : std::nullopt;
  if (!count) return std::nullopt;
  for (std::size_t index = 0; index < *count; ++index) {
    const auto entry = *directory + 2 + index * entryBytes;
    if (reader.number(entry, 2) != orientationTag) continue;
    const auto value = reader.number(entry + valueOffset, 2);
    return value ? std::optional(static_cast<int>(*value)) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

Turn Turn::ofOrientation(int orientation) {
  constexpr std::array<Turn, 9> turns{{{},
                                       {},
                                       {false, true, false},
                                       {false, true, true},
                                       {false, false, true},
                                       {true, false, false},
                                       {true, false, true},
                                       {true, true, true},
                                       {true, true, false}}};
  return orientation >= 0 && orientation < static_cast<int>(turns.size()) ? turns[static_cast<std::size_t>(orientation)]
                                                                          : Turn{};
}

Turn Turn::ofExif(std::span<const std::uint8_t> payload) {
  constexpr std::string_view prefix("Exif\0\0", 6);
  if (payload.size() < prefix.size() || !std::equal(prefix.begin(), prefix.end(), payload.begin())) return {};
  return ofOrientation(orientationOfTiff(payload.subspan(prefix.size())).value_or(1));
}

UprightSamples UprightSamples::of(const std::uint8_t* stored, std::size_t width, std::size_t height,
                                  std::size_t pixelBytes, std::size_t rowBytes, const Turn& turn) {
  const auto pixel = static_cast<std::ptrdiff_t>(pixelBytes);
  const auto row = static_cast<std::ptrdiff_t>(rowBytes);
  const auto* origin = stored;
  if (turn.mirrorsX) origin += static_cast<std::ptrdiff_t>(width - 1) * pixel;
  if (turn.mirrorsY) origin += static_cast<std::ptrdiff_t>(height - 1) * row;
  const auto alongX = turn.mirrorsX ? -pixel : pixel;
  const auto alongY = turn.mirrorsY ? -row : row;
  return turn.swapsAxes ? UprightSamples{origin, alongY, alongX} : UprightSamples{origin, alongX, alongY};
}

}  // namespace orivex::gtk

#include <string>
#include <string_view>

#include "FileBytes.h"
#include "PersonalTraces.h"

namespace orivex {
namespace {

using namespace std::string_view_literals;

constexpr int startOfScan = 0xDA;
constexpr int endOfImage = 0xD9;
constexpr int comment = 0xFE;
constexpr int firstApplication = 0xE0;
constexpr int exifApplication = 0xE1;
constexpr int lastApplication = 0xEF;
constexpr auto exifName = "Exif\0\0"sv;

// More parts than this are no picture's.
constexpr int mostSegments = 4096;

// Whether an application's segment is needed to show the picture.
bool isOfPicture(std::string_view content) {
  return content.starts_with("JFIF\0"sv) || content.starts_with("ICC_PROFILE\0"sv) || content.starts_with("Adobe"sv);
}

// By the first directory of an Exif block in either byte order; 1 is upright.
char orientationIn(std::string_view tiff) {
  const bool isLittle = tiff.starts_with("II");
  const auto number = [&](std::size_t at, std::size_t length) {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < length && at + index < tiff.size(); ++index) {
      const auto byte = static_cast<unsigned char>(tiff[at + (isLittle ? length - 1 - index : index)]);
      value = value << 8U | byte;
    }
    return value;
  };
  if (tiff.size() < 10) return 1;
  const std::size_t directory = number(4, 4);
  if (directory > tiff.size() - 2) return 1;
  const auto entries = number(directory, 2);
  constexpr std::size_t entryBytes = 12;
  for (std::size_t index = 0; index < entries; ++index) {
    const auto entry = directory + 2 + index * entryBytes;
    if (entry + entryBytes > tiff.size()) break;
    if (constexpr std::uint32_t orientationTag = 0x0112; number(entry, 2) != orientationTag) continue;
    const auto orientation = number(entry + 8, 2);
    return orientation >= 1 && orientation <= 8 ? static_cast<char>(orientation) : char{1};
  }
  return 1;
}

// An Exif block of one entry.
std::string plainExif(char orientation) {
  std::string block(exifName);
  block.append("MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0"sv).push_back(orientation);
  return block.append(6, '\0');
}

class Walk {
 public:
  explicit Walk(FileBytes& file) : file_(file) {}

  std::vector<Overwrite> traces() {
    std::int64_t at = 2;
    for (int count = 0; count < mostSegments && at >= 0; ++count) at = segment(at);
    return std::move(traces_);
  }

 private:
  // The place of the next segment; negative after the last.
  std::int64_t segment(std::int64_t at) {
    const auto head = file_.read(at, 4);
    if (head.size() < 2 || static_cast<unsigned char>(head[0]) != 0xFF) return -1;
    const int marker = static_cast<unsigned char>(head[1]);
    if (marker == 0xFF) return at + 1;  // padding
    if (marker == endOfImage) return end(at + 2);
    if (head.size() < 4) return -1;
    const auto length = static_cast<std::int64_t>(file_.number(at + 2, 2)) - 2;
    if (length < 0) return -1;
    inspect(marker, at + 4, length);
    const auto next = at + 4 + length;
    return marker == startOfScan ? afterScan(next) : next;
  }

  void inspect(int marker, std::int64_t at, std::int64_t length) {
    if (marker != comment && (marker < firstApplication || marker > lastApplication)) return;
    const auto content = file_.read(at, length);
    if (marker != comment && isOfPicture(content)) return;
    std::string kept;
    if (marker == exifApplication && std::string_view(content).starts_with(exifName)) {
      kept = plainExif(orientationIn(std::string_view(content).substr(exifName.size())));
      if (kept.size() > content.size()) kept.clear();
    }
    traces_.push_back({at, length, std::move(kept)});
  }

  // Compressed data ends at a marker that is no restart and no stuffed byte.
  std::int64_t afterScan(std::int64_t at) {
    constexpr std::int64_t atOnce = 65536;
    while (at < file_.size()) {
      const auto part = file_.read(at, atOnce);
      for (std::size_t index = 0; index + 1 < part.size(); ++index) {
        if (static_cast<unsigned char>(part[index]) != 0xFF) continue;
        const auto next = static_cast<unsigned char>(part[index + 1]);
        const bool isData = next == 0 || next == 0xFF || (next >= 0xD0 && next <= 0xD7);
        if (!isData) return at + static_cast<std::int64_t>(index);
      }
      if (part.size() < 2) break;
      at += static_cast<std::int64_t>(part.size()) - 1;
    }
    return -1;
  }

  // Phones put further pictures and films behind, each with traces of its own.
  std::int64_t end(std::int64_t at) {
    if (at < file_.size()) traces_.push_back({at, file_.size() - at, {}});
    return -1;
  }

  FileBytes& file_;
  std::vector<Overwrite> traces_;
};

}  // namespace

std::vector<Overwrite> jpegTraces(FileBytes& file) {
  return Walk(file).traces();
}

}  // namespace orivex

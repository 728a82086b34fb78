#include "PersonalTraces.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "FileBytes.h"

namespace orivex {
namespace {

using namespace std::string_view_literals;

constexpr int mostChunks = 65536;

// The check sum at the end of a PNG's chunk, of its type and as many zeros as it has content.
std::string pngCheckSum(std::string_view type, std::int64_t zeros) {
  std::uint32_t sum = ~0U;
  const auto add = [&sum](unsigned char byte) {
    sum ^= byte;
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1U ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0);
  };
  for (const char letter : type) add(static_cast<unsigned char>(letter));
  for (std::int64_t zero = 0; zero < zeros; ++zero) add(0);
  std::string text;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) text.push_back(static_cast<char>(~sum >> shift & 0xFFU));
  return text;
}

// Texts become a chunk of nobody's, which every viewer passes over.
std::vector<Overwrite> pngTraces(FileBytes& file) {
  constexpr auto nobody = "orFr"sv;
  std::vector<Overwrite> traces;
  std::int64_t at = 8;
  for (int count = 0; count < mostChunks && at + 12 <= file.size(); ++count) {
    const auto length = static_cast<std::int64_t>(file.number(at, 4));
    if (length > file.size() - at - 12) break;
    const auto type = file.read(at + 4, 4);
    if (type == "tEXt" || type == "zTXt" || type == "iTXt" || type == "eXIf" || type == "tIME") {
      traces.push_back({at + 4, length + 4, std::string(nobody)});
      traces.push_back({at + 8 + length, 4, pngCheckSum(nobody, length)});
    }
    at += length + 12;
  }
  return traces;
}

std::vector<Overwrite> webpTraces(FileBytes& file) {
  constexpr char exifAndXmp = 0x0C;
  std::vector<Overwrite> traces;
  std::int64_t at = 12;
  for (int count = 0; count < mostChunks && at + 8 <= file.size(); ++count) {
    const auto type = file.read(at, 4);
    const auto length = static_cast<std::int64_t>(file.littleNumber(at + 4, 4));
    if (length > file.size() - at - 8) break;
    if (type == "VP8X" && length > 0) {
      const auto flags = file.read(at + 8, 1);
      traces.push_back({at + 8, 1, std::string(1, static_cast<char>(flags[0] & ~exifAndXmp))});
    } else if (type == "EXIF" || type == "XMP ") {
      traces.push_back({at, 4, "JUNK"});
      traces.push_back({at + 8, length, {}});
    }
    at += 8 + length + length % 2;
  }
  return traces;
}

}  // namespace

std::vector<Overwrite> personalTraces(const std::string& path) {
  FileBytes file(path);
  const auto head = file.read(0, 12);
  const std::string_view start(head);
  if (start.starts_with("\xFF\xD8\xFF")) return jpegTraces(file);
  if (start.starts_with("\x89PNG\r\n\x1a\n")) return pngTraces(file);
  if (start.starts_with("RIFF") && start.ends_with("WEBP")) return webpTraces(file);
  constexpr std::array<std::string_view, 6> boxes{"ftyp", "moov", "mdat", "wide", "free", "skip"};
  for (const auto& type : boxes) {
    if (start.substr(std::min<std::size_t>(4, start.size())).starts_with(type)) return boxTraces(file);
  }
  return {};
}

}  // namespace orivex

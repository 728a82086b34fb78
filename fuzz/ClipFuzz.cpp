#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <variant>

#include "Expect.h"
#include "av/WavFile.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

using fuzz::expect;

// What players read of a header.
std::uint32_t number(const std::string& file, std::size_t at, std::size_t bytes) {
  std::uint32_t value = 0;
  while (bytes-- > 0) value = value << 8U | static_cast<unsigned char>(file.at(at + bytes));
  return value;
}

// A clip of pieces of any length, whose first bytes say how long they are.
void record(std::span<const std::byte> input) {
  static const TemporaryFolder folder;
  const auto path = folder.path() / "clip.wav";
  std::filesystem::remove(path);
  const PcmFormat format{.rate = 16000, .channels = 1 + static_cast<int>(input.size() % 2)};
  auto made = WavFile::create(path.string(), format);
  auto& clip = std::get<WavFile>(made);
  while (!input.empty()) {
    const auto length = std::min(static_cast<std::size_t>(input.front()), input.size() - 1);
    expect(!clip.append(input.subspan(1, length)), "a piece is taken");
    input = input.subspan(1 + length);
    std::ifstream stream(path, std::ios::binary);
    const std::string file{std::istreambuf_iterator<char>(stream), {}};
    const auto frameBytes = static_cast<std::uint32_t>(format.frameSize());
    const auto frames = number(file, 40, 4);
    expect(file.starts_with("RIFF") && number(file, 4, 4) == frames + 36, "the file is as long as it says");
    expect(frames % frameBytes == 0 && 44 + frames <= file.size(), "it promises whole frames that are there");
    expect(number(file, 24, 4) == 16000 && number(file, 32, 2) == frameBytes, "its format is told");
  }
}

}  // namespace
}  // namespace orivex::gtk

// The name that the fuzzer calls.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orivex::gtk::record(std::as_bytes(std::span(data, size)));
  return 0;
}

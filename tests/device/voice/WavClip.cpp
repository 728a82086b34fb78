#include "WavClip.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace orivex::gtk {
namespace {

template <class Integer>
Integer numberAt(const std::string& bytes, std::size_t position) {
  Integer value = 0;
  std::memcpy(&value, bytes.data() + position, sizeof value);
  return value;
}

}  // namespace

WavClip::WavClip(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});
  if (bytes.size() < 44) {
    fault = "no header";
    return;
  }
  const auto size = numberAt<std::uint32_t>(bytes, 40);
  if (bytes.substr(0, 4) != "RIFF" || bytes.substr(8, 8) != "WAVEfmt " || bytes.substr(36, 4) != "data")
    fault = "names";
  if (numberAt<std::uint32_t>(bytes, 4) != size + 36 || numberAt<std::uint32_t>(bytes, 16) != 16) fault = "sizes";
  if (size > bytes.size() - 44 || size % 2 != 0) fault = "more samples in the header than in the file";
  if (!fault.empty()) return;
  format = numberAt<std::uint16_t>(bytes, 20);
  channels = numberAt<std::uint16_t>(bytes, 22);
  rate = static_cast<int>(numberAt<std::uint32_t>(bytes, 24));
  bytesPerSecond = static_cast<int>(numberAt<std::uint32_t>(bytes, 28));
  frameSize = numberAt<std::uint16_t>(bytes, 32);
  bits = numberAt<std::uint16_t>(bytes, 34);
  samples.resize(size / 2);
  if (size > 0) std::memcpy(samples.data(), bytes.data() + 44, size);
}

double WavClip::frequency() const {
  std::vector<std::size_t> rises;
  for (std::size_t index = 1; index < samples.size(); ++index) {
    if (samples[index - 1] < 0 && samples[index] >= 0) rises.push_back(index);
  }
  if (rises.size() < 2) return 0;
  return static_cast<double>(rises.size() - 1) * rate / static_cast<double>(rises.back() - rises.front());
}

double WavClip::peak() const {
  int highest = 0;
  for (const auto sample : samples) highest = std::max(highest, std::abs(static_cast<int>(sample)));
  return 20 * std::log10(highest / 32768.0);
}

}  // namespace orivex::gtk

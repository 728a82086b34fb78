#include "WavClip.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace orivex::gtk {
namespace {

std::string number(std::uint32_t value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

}  // namespace

WavClip::WavClip(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});
  if (bytes.size() < 44) {
    fault = "no header";
    return;
  }
  std::uint32_t size = 0;
  std::memcpy(&size, bytes.data() + 40, sizeof size);
  const std::string format = number(16) + std::string("\1\0\1\0", 4) + number(16000) + number(32000);
  const auto expected = "RIFF" + number(size + 36) + "WAVEfmt " + format + std::string("\2\0\x10\0", 4) + "data";
  if (bytes.substr(0, 40) != expected) fault = "another header";
  if (size > bytes.size() - 44 || size % 2 != 0) fault = "more samples in the header than in the file";
  if (!fault.empty()) return;
  samples.resize(size / 2);
  if (size > 0) std::memcpy(samples.data(), bytes.data() + 44, size);
}

double WavClip::frequency() const {
  std::vector<std::size_t> rises;
  for (std::size_t index = 1; index < samples.size(); ++index) {
    if (samples[index - 1] < 0 && samples[index] >= 0) rises.push_back(index);
  }
  if (rises.size() < 2) return 0;
  return static_cast<double>(rises.size() - 1) * 16000.0 / static_cast<double>(rises.back() - rises.front());
}

double WavClip::peak() const {
  int highest = 0;
  for (const auto sample : samples) highest = std::max(highest, std::abs(static_cast<int>(sample)));
  return 20 * std::log10(highest / 32768.0);
}

}  // namespace orivex::gtk

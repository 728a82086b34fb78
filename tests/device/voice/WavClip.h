#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orivex::gtk {

/// A WAV file of 16 bits, 16 kHz and one channel as a player that trusts its header reads it.
struct WavClip {
  /// What a reader sees first that is wrong with the file; empty when nothing is.
  std::string fault;
  std::vector<std::int16_t> samples;

  explicit WavClip(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    if (bytes.size() < 44) {
      fault = "no header";
      return;
    }
    const auto number = [](std::uint32_t value) {
      return std::string(reinterpret_cast<const char*>(&value), sizeof value);
    };
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

  double seconds() const { return static_cast<double>(samples.size()) / 16000; }

  /// Of a pure tone, in Hz, by its rises through zero.
  double frequency() const {
    std::vector<std::size_t> rises;
    for (std::size_t index = 1; index < samples.size(); ++index) {
      if (samples[index - 1] < 0 && samples[index] >= 0) rises.push_back(index);
    }
    if (rises.size() < 2) return 0;
    return static_cast<double>(rises.size() - 1) * 16000.0 / static_cast<double>(rises.back() - rises.front());
  }

  /// Of the highest sample, in dBFS.
  double peak() const {
    int highest = 0;
    for (const auto sample : samples) highest = std::max(highest, std::abs(static_cast<int>(sample)));
    return 20 * std::log10(highest / 32768.0);
  }
};

}  // namespace orivex::gtk

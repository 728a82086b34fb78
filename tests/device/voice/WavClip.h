#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orivex::gtk {

/// A WAV file of 16 bits, 16 kHz and one channel as a player that trusts its header reads it.
struct WavClip {
  /// What a reader sees first that is wrong with the file; empty when nothing is.
  std::string fault;
  std::vector<std::int16_t> samples;

  explicit WavClip(const std::filesystem::path& path);

  double seconds() const { return static_cast<double>(samples.size()) / 16000; }

  /// Of a pure tone, in Hz, by its rises through zero.
  double frequency() const;

  /// Of the highest sample, in dBFS.
  double peak() const;
};

}  // namespace orivex::gtk

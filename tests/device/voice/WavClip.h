#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orivex::gtk {

/// A WAV file as a player that trusts its header reads it.
struct WavClip {
  /// What a reader sees first that is wrong with the file; empty when nothing is.
  std::string fault;
  int format = 0;
  int channels = 0;
  int rate = 0;
  int bytesPerSecond = 0;
  int frameSize = 0;
  int bits = 0;
  std::vector<std::int16_t> samples;

  explicit WavClip(const std::filesystem::path& path);

  double seconds() const { return static_cast<double>(samples.size()) / 16000; }

  /// Of a pure tone, in Hz, by its rises through zero.
  double frequency() const;

  /// Of the highest sample, in dBFS.
  double peak() const;
};

}  // namespace orivex::gtk

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orivex::bench {

using Paths = std::vector<std::filesystem::path>;

/// The yardstick: one thread takes one photo after the other through libjpeg's decoder to RGB, libjpeg's encoder and
/// GLib's Base64. Returns its milliseconds of processor time.
double plainRoad(const Paths& photos, int quality);

/// What the decoders of one road have cost.
struct Cost {
  double processor = 0;     ///< milliseconds of the busiest, its start included
  double decoderBytes = 0;  ///< the peaks of all, added up
  double largestDecoderBytes = 0;
};

/// The component's codec and Base64 on `workers` threads, which take the next photo when they are free, with decoders
/// that are started for it.
Cost ownRoad(const Paths& photos, double quality, int workers);

}  // namespace orivex::bench

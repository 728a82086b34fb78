#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <glib.h>

#include "orivex/models/Base64.h"

namespace orivex::bench {
namespace {

using GlibText = std::unique_ptr<gchar, decltype(&g_free)>;

/// A photo as the page gets it.
const Bytes& photo() {
  static const Bytes bytes = [] {
    Bytes filled(4'000'001);
    for (std::size_t i = 0; i < filled.size(); ++i) filled[i] = static_cast<std::uint8_t>(i * i >> 3U);
    return filled;
  }();
  return bytes;
}

const std::string& photoText() {
  static const std::string text = base64Encode(photo());
  return text;
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(photo().size()));
}

void encodeOurs(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(base64Encode(photo()));
  countBytes(state);
}

void encodeGlib(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(GlibText(g_base64_encode(photo().data(), photo().size()), g_free));
  countBytes(state);
}

void decodeOurs(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(base64Decode(photoText()));
  countBytes(state);
}

void decodeGlib(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    gsize size = 0;
    guchar* const bytes = g_base64_decode(photoText().c_str(), &size);
    benchmark::DoNotOptimize(bytes);
    g_free(bytes);
  }
  countBytes(state);
}

BENCHMARK(encodeOurs)->Name("base64 encode/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeGlib)->Name("base64 encode/glib")->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeOurs)->Name("base64 decode/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeGlib)->Name("base64 decode/glib")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace orivex::bench

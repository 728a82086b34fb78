#include "Roads.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <thread>

#include <glib.h>

#include "PlainJpeg.h"
#include "device/TestDecoder.h"
#include "pictures/PictureCodec.h"

#include "orivex/models/Base64.h"

namespace orivex::bench {
namespace {

constexpr std::string_view prefix = "data:image/jpeg;base64,";

double threadMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// What a process has spent so far, its start included.
double processMilliseconds(const std::filesystem::path& process) {
  double nanoseconds = 0;
  std::ifstream(process / "schedstat") >> nanoseconds;
  return nanoseconds / 1e6;
}

std::string read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string plainAddress(const std::filesystem::path& photo, int quality) {
  const auto jpeg = gtk::encodePlainJpeg(gtk::decodePlainJpeg(read(photo)), {.quality = quality});
  char* const text = g_base64_encode(reinterpret_cast<const guchar*>(jpeg.data()), jpeg.size());
  std::string address = std::string(prefix) + text;
  g_free(text);
  return address;
}

std::string ownAddress(const gtk::Decoder& decoder, const std::filesystem::path& photo, double quality) {
  const auto result = gtk::PictureCodec(decoder).jpeg(photo, quality);
  const auto& jpeg = std::get<JpegImage>(result).bytes;
  std::string address{prefix};
  appendBase64(address, {reinterpret_cast<const std::uint8_t*>(jpeg.data()), jpeg.size()});
  return address;
}

}  // namespace

double plainRoad(const Paths& photos, int quality) {
  const double started = threadMilliseconds();
  std::vector<std::string> addresses;
  for (const auto& photo : photos) addresses.push_back(plainAddress(photo, quality));
  return threadMilliseconds() - started;
}

Cost ownRoad(const Paths& photos, double quality, int workers) {
  std::vector<std::string> addresses(photos.size());
  const gtk::TestDecoder decoder;
  std::atomic<std::size_t> next = 0;
  std::vector<std::thread> threads;
  threads.reserve(static_cast<std::size_t>(workers));
  for (int worker = 0; worker < workers; ++worker) {
    threads.emplace_back([&] {
      for (std::size_t index = next++; index < photos.size(); index = next++) {
        addresses[index] = ownAddress(decoder, photos[index], quality);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  Cost cost;
  for (const auto& process : gtk::childProcesses()) {
    cost.processor = std::max(cost.processor, processMilliseconds(process));
    constexpr double kibibyte = 1024;
    const double peak = std::stod(gtk::figureOf(process, "VmHWM:\t")) * kibibyte;
    cost.decoderBytes += peak;
    cost.largestDecoderBytes = std::max(cost.largestDecoderBytes, peak);
  }
  return cost;
}

}  // namespace orivex::bench

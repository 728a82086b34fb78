#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "../screen/Bench.h"
#include "Memory.h"
#include "PlainJpeg.h"
#include "Roads.h"
#include "TemporaryFolder.h"
#include "device/TestDecoder.h"
#include "pictures/PictureCodec.h"

namespace orivex::bench {
namespace {

constexpr unsigned width = 4000;
constexpr unsigned height = 3000;
constexpr double photoBytes = 3.0 * width * height;
constexpr int rounds = 5;
constexpr int workers = 2;

// An Exif block that holds nothing but an orientation.
gtk::JpegMarker exif(char orientation) {
  std::string payload("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 32);
  payload[25] = orientation;
  return {0xE1, payload};
}

struct Kind {
  const char* name;
  gtk::PlainJpegOptions options;
};

// Mostly what phones write; two of them held upright.
const std::array<Kind, 9> kinds{{
    {"4:2:0", {}},
    {"4:2:0", {}},
    {"4:2:0", {}},
    {"4:2:0", {}},
    {"4:2:0, turned", {.markers = {exif(6)}}},
    {"4:2:0, turned", {.markers = {exif(8)}}},
    {"4:2:0", {}},
    {"4:2:2", {.lumaDown = 1}},
    {"4:4:4", {.lumaAcross = 1, .lumaDown = 1}},
}};

Paths writePhotos(const gtk::TemporaryFolder& folder) {
  Paths photos(kinds.size());
  std::vector<std::thread> threads;
  threads.reserve(workers);
  for (int worker = 0; worker < workers; ++worker) {
    threads.emplace_back([&, worker] {
      for (auto index = static_cast<std::size_t>(worker); index < kinds.size(); index += workers) {
        const auto photo = gtk::naturalPhoto(width, height, static_cast<unsigned>(index) + 1);
        photos[index] = folder.write(std::to_string(index) + ".jpg", encodePlainJpeg(photo, kinds[index].options));
      }
    });
  }
  for (auto& thread : threads) thread.join();
  return photos;
}

std::size_t fileBytes(const Paths& photos) {
  std::size_t bytes = 0;
  for (const auto& photo : photos) bytes += std::filesystem::file_size(photo);
  return bytes;
}

// Other programs stretch the wall time of two threads more than that of one. The processor time of the busier thread
// is what the wall time would be on two free cores.
void measureSpeed(const Paths& photos, double quality) {
  std::vector<double> plain;
  std::vector<double> own;
  std::vector<double> processor;
  for (int round = 0; round < rounds; ++round) {
    double started = milliseconds();
    const double plainProcessor = plainRoad(photos, static_cast<int>(quality * 100));
    plain.push_back(milliseconds() - started);
    started = milliseconds();
    const double ownProcessor = ownRoad(photos, quality, workers).processor;
    own.push_back(milliseconds() - started);
    processor.push_back(ownProcessor / plainProcessor);
  }
  print("nine photos, plain, one thread", median(plain), "ms");
  print("nine photos, own, two threads", median(own), "ms");
  print("own of plain", median(own) / median(plain), "");
  print("processor time of the busier thread, own of plain", median(processor), "");
}

void measureMemory(const gtk::TemporaryFolder& folder, double quality) {
  for (const std::string road : {"plain", "own", "larger decoder"}) {
    const auto arguments = "'" + road + "' " + std::to_string(quality) + " '" + folder.path().string() + "'";
    print("peak memory, " + road + ", in decoded photos", askFreshProcess(arguments) / photoBytes, "");
  }
}

// What a fresh process is asked.
int tellPeak(const std::string& road, double quality, const std::filesystem::path& folder) {
  Paths photos;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) photos.push_back(entry.path());
  Cost cost;
  const double own = growth([&] {
    if (road == "plain") {
      plainRoad(photos, static_cast<int>(quality * 100));
    } else {
      cost = ownRoad(photos, quality, workers);
    }
  });
  std::printf("%.0f\n", road == "larger decoder" ? cost.largestDecoderBytes : own + cost.decoderBytes);
  return 0;
}

// How near the own road's pictures come to the plain one's and to the photo itself, and their sizes. The photo is
// stored without a turn.
void measureLikeness(const gtk::TemporaryFolder& folder, int storedQuality, const Kind& kind, double quality) {
  auto options = kind.options;
  options.quality = storedQuality;
  const gtk::TestDecoder decoder;
  const auto stored = encodePlainJpeg(gtk::naturalPhoto(width / 2, height / 2, 77), options);
  const auto original = gtk::decodePlainJpeg(stored);
  const auto plain = encodePlainJpeg(original, {.quality = static_cast<int>(quality * 100)});
  const auto own = std::get<JpegImage>(gtk::PictureCodec(decoder).jpeg(folder.write("one.jpg", stored), quality)).bytes;
  const auto plainPixels = gtk::decodePlainJpeg(plain);
  const auto ownPixels = gtk::decodePlainJpeg(own);
  std::printf(
      "%3d %-6s %4.1f   own to plain %5.1f dB   to the photo: plain %5.1f dB, own %5.1f dB   own size of plain's "
      "%.2f\n",
      storedQuality, kind.name, quality, psnr(ownPixels, plainPixels), psnr(plainPixels, original),
      psnr(ownPixels, original), static_cast<double>(own.size()) / static_cast<double>(plain.size()));
}

}  // namespace
}  // namespace orivex::bench

// pictures-bench: how long the codec takes from chosen photos to data addresses, in what memory, and how like they are.
int main(int argc, char** argv) {
  using namespace orivex;
  if (argc == 4) return bench::tellPeak(argv[1], std::atof(argv[2]), argv[3]);
  const gtk::TemporaryFolder folder;
  const auto photos = bench::writePhotos(folder);
  bench::print("size of a photo", static_cast<double>(bench::fileBytes(photos)) / 9e6, "MB");
  for (const double quality : {0.7, 1.0}) {
    std::printf("quality %.1f\n", quality);
    bench::measureSpeed(photos, quality);
    bench::measureMemory(folder, quality);
  }
  for (const auto& kind : {bench::kinds[0], bench::kinds[7], bench::kinds[8]}) {
    for (const int stored : {92, 80, 60}) {
      bench::measureLikeness(folder, stored, kind, 0.7);
      bench::measureLikeness(folder, stored, kind, 1.0);
    }
  }
  return 0;
}

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <glib.h>

#include "Bench.h"
#include "NaturalPhoto.h"
#include "device/media/PlainJpeg.h"
#include "pictures/PictureCodec.h"
#include "support/Processes.h"
#include "support/TemporaryFolder.h"
#include "support/TestDecoder.h"

#include "orivex/models/Base64.h"

namespace orivex::bench {
namespace {

using Paths = std::vector<std::filesystem::path>;

constexpr unsigned width = 4000;
constexpr unsigned height = 3000;
constexpr double photoBytes = 3.0 * width * height;
constexpr double kibibyte = 1024;
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

Paths writePhotos(const TemporaryFolder& folder) {
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

constexpr std::string_view prefix = "data:image/jpeg;base64,";

// What a process has spent so far, its start included.
double processMilliseconds(int process) {
  double nanoseconds = 0;
  std::ifstream("/proc/" + std::to_string(process) + "/schedstat") >> nanoseconds;
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

// The yardstick: one thread takes one photo after the other through libjpeg's decoder to RGB, libjpeg's encoder and
// GLib's Base64. Returns its milliseconds of processor time.
double convertPlainly(const Paths& photos, int quality) {
  const double started = threadMilliseconds();
  std::vector<std::string> addresses;
  for (const auto& photo : photos) addresses.push_back(plainAddress(photo, quality));
  return threadMilliseconds() - started;
}

// What the decoders of one conversion have cost.
struct Cost {
  double processor = 0;     // milliseconds of the busiest, its start included
  double decoderBytes = 0;  // the peaks of all, added up
  double largestDecoderBytes = 0;
};

// The component's codec and Base64 on two threads, which take the next photo when they are free, with decoders that are
// started for it.
Cost convertByComponent(const Paths& photos, double quality) {
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
  for (const int process : gtk::decoderProcesses()) {
    cost.processor = std::max(cost.processor, processMilliseconds(process));
    const double peak = std::stod(gtk::figureOf(process, "VmHWM:\t")) * kibibyte;
    cost.decoderBytes += peak;
    cost.largestDecoderBytes = std::max(cost.largestDecoderBytes, peak);
  }
  return cost;
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
    const double plainProcessor = convertPlainly(photos, static_cast<int>(quality * 100));
    plain.push_back(milliseconds() - started);
    started = milliseconds();
    const double ownProcessor = convertByComponent(photos, quality).processor;
    own.push_back(milliseconds() - started);
    processor.push_back(ownProcessor / plainProcessor);
  }
  print("nine photos, plain, one thread", median(plain), "ms");
  print("nine photos, own, two threads", median(own), "ms");
  print("own of plain", median(own) / median(plain), "");
  print("processor time of the busier thread, own of plain", median(processor), "");
}

// Runs this program anew with `arguments` and returns the number that it prints.
double askFreshProcess(const std::string& arguments) {
  const auto program = std::filesystem::read_symlink("/proc/self/exe").string();
  std::FILE* const output = popen(("'" + program + "' " + arguments).c_str(), "r");
  double number = 0;
  if (!output || std::fscanf(output, "%lf", &number) != 1 || pclose(output) != 0) std::abort();
  return number;
}

void measureMemory(const TemporaryFolder& folder, double quality) {
  for (const std::string way : {"plain", "own", "larger decoder"}) {
    const auto arguments = "'" + way + "' " + std::to_string(quality) + " '" + folder.path().string() + "'";
    print("peak memory, " + way + ", in decoded photos", askFreshProcess(arguments) / photoBytes, "");
  }
}

// What a fresh process is asked: by how many bytes it grows. Memory that was used before is used again unnoticed.
int tellPeak(const std::string& way, double quality, const std::filesystem::path& folder) {
  Paths photos;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) photos.push_back(entry.path());
  Cost cost;
  const double before = statusKiB("VmRSS");
  if (way == "plain") {
    convertPlainly(photos, static_cast<int>(quality * 100));
  } else {
    cost = convertByComponent(photos, quality);
  }
  const double own = (statusKiB("VmHWM") - before) * kibibyte;
  std::printf("%.0f\n", way == "larger decoder" ? cost.largestDecoderBytes : own + cost.decoderBytes);
  return 0;
}

// How near the component's pictures come to the plain way's and to the photo itself, and their sizes. The photo is
// stored without a turn.
void measureLikeness(const TemporaryFolder& folder, const Kind& kind, double quality) {
  const gtk::TestDecoder decoder;
  const auto stored = encodePlainJpeg(gtk::naturalPhoto(width / 2, height / 2, 77), kind.options);
  const auto original = gtk::decodePlainJpeg(stored);
  const auto plain = encodePlainJpeg(original, {.quality = static_cast<int>(quality * 100)});
  const auto own = std::get<JpegImage>(gtk::PictureCodec(decoder).jpeg(folder.write("one.jpg", stored), quality)).bytes;
  const auto plainPixels = gtk::decodePlainJpeg(plain);
  const auto ownPixels = gtk::decodePlainJpeg(own);
  std::printf(
      "%-6s %4.1f   own to plain %5.1f dB   to the photo: plain %5.1f dB, own %5.1f dB   own size of plain's "
      "%.2f\n",
      kind.name, quality, psnr(ownPixels, plainPixels), psnr(plainPixels, original), psnr(ownPixels, original),
      static_cast<double>(own.size()) / static_cast<double>(plain.size()));
}

}  // namespace
}  // namespace orivex::bench

// pictures-bench: how long the codec takes from chosen photos to data addresses, in what memory, and how like they are.
int main(int argc, char** argv) {
  using namespace orivex;
  if (argc == 4) return bench::tellPeak(argv[1], std::atof(argv[2]), argv[3]);
  const TemporaryFolder folder;
  const auto photos = bench::writePhotos(folder);
  bench::print("size of a photo", static_cast<double>(bench::fileBytes(photos)) / 9e6, "MB");
  for (const double quality : {0.7, 1.0}) {
    std::printf("quality %.1f\n", quality);
    bench::measureSpeed(photos, quality);
    bench::measureMemory(folder, quality);
  }
  for (const auto& kind : {bench::kinds[0], bench::kinds[7], bench::kinds[8]}) {
    for (const double quality : {0.7, 1.0}) bench::measureLikeness(folder, kind, quality);
  }
  return 0;
}

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Bench.h"
#include "GlibMainQueue.h"
#include "LoopMeter.h"
#include "SinkServer.h"
#include "net/CurlHttpClient.h"
#include "support/TemporaryFolder.h"

namespace orivex::bench {
namespace {

constexpr std::size_t mebibyte = 1 << 20;

std::string makeFile(const TemporaryFolder& folder, std::size_t size) {
  const auto path = folder.path() / std::to_string(size);
  std::ofstream file(path, std::ios::binary);
  const std::string piece(std::min(size, mebibyte), 'x');
  for (std::size_t written = 0; written < size; written += piece.size()) file << piece;
  return path.string();
}

/// The real HTTP client on GLib's main loop.
class OurClient {
 public:
  OurClient() { g_setenv("no_proxy", "*", TRUE); }

  struct Uploads {
    double milliseconds = 0;
    double longestHold = 0;  ///< of the main thread between two waits of its loop
    std::size_t progress = 0;
  };

  /// Uploads a file `times` times, each when the one before has ended.
  Uploads upload(const std::string& url, const std::string& file, int times) {
    Uploads uploads;
    LoopMeter meter;
    const double start = milliseconds();
    for (int time = 0; time < times; ++time) {
      bool isOver = false;
      client_.upload(
          {.url = *Url::parse(url),
           .headers = {{"Content-Type", "multipart/form-data"}},
           .file = FilePart{"file", FilePart::Path{file}, "file", "text/plain"},
           .fields = {}},
          [&](double) { ++uploads.progress; },
          [&](UploadReply reply) {
            if (!reply.response || reply.response->status != 200) throw std::runtime_error("the upload failed");
            isOver = true;
          });
      while (!isOver) g_main_context_iteration(nullptr, TRUE);
    }
    uploads.milliseconds = milliseconds() - start;
    uploads.longestHold = meter.take().longest;
    return uploads;
  }

 private:
  gtk::GlibMainQueue queue_;
  gtk::CurlHttpClient client_{queue_};
};

/// Milliseconds that the curl command takes for `times` uploads of a file, one after the other over one connection,
/// with its own beginning and end.
double curlMilliseconds(const std::string& url, const std::string& file, int times) {
  const auto list = file + ".curl";
  {
    std::ofstream config(list);
    for (int time = 0; time < times; ++time) {
      if (time > 0) config << "next\n";
      config << "url = \"" << url << "\"\nform = \"file=@" << file
             << ";type=text/plain\"\nsilent\noutput = /dev/null\n";
    }
  }
  const double start = milliseconds();
  if (std::system(("curl -q --noproxy '*' -K " + list).c_str()) != 0) throw std::runtime_error("curl failed");
  return milliseconds() - start;
}

// What else the machine does can only make an upload slower.
double best(const std::vector<double>& milliseconds) {
  return *std::min_element(milliseconds.begin(), milliseconds.end());
}

// Half of the rounds begin with the one, half with the other.
template <class Ours, class Theirs>
void race(int rounds, Ours&& ours, Theirs&& theirs) {
  for (int round = 0; round < rounds; ++round) {
    if (round % 2 == 0) ours();
    theirs();
    if (round % 2 == 1) ours();
  }
}

void printRatio(const std::string& what, double ours, double theirs) {
  print(what + ", our client", ours, "ms");
  print(what + ", curl command without its start", theirs, "ms");
  print(what + ", as fast as the curl command", theirs / ours, "times");
}

void measureLargeFile(OurClient& client, const std::string& url, const std::string& file, const std::string& empty) {
  std::vector<double> ours;
  std::vector<double> theirs;
  double hold = 0;
  std::size_t progress = 0;
  std::vector<double> starts;
  race(
      20,
      [&] {
        const auto uploads = client.upload(url, file, 1);
        ours.push_back(uploads.milliseconds);
        hold = std::max(hold, uploads.longestHold);
        progress += uploads.progress;
      },
      [&] {
        starts.push_back(curlMilliseconds(url, empty, 1));
        theirs.push_back(curlMilliseconds(url, file, 1));
      });
  printRatio("256 MiB", best(ours), best(theirs) - best(starts));
  print("256 MiB, longest hold of the main thread", hold, "ms");
  print("256 MiB, progress reports", static_cast<double>(progress) / static_cast<double>(ours.size()), "an upload");
}

void measureSmallFiles(OurClient& client, const std::string& url, const std::string& file) {
  constexpr int times = 200;
  std::vector<double> ours;
  std::vector<double> theirs;
  std::vector<double> starts;
  double hold = 0;
  race(
      20,
      [&] {
        const auto uploads = client.upload(url, file, times);
        ours.push_back(uploads.milliseconds);
        hold = std::max(hold, uploads.longestHold);
      },
      [&] {
        starts.push_back(curlMilliseconds(url, file, 1));
        theirs.push_back(curlMilliseconds(url, file, times + 1));
      });
  printRatio("200 x 10 kB", best(ours), best(theirs) - best(starts));
  print("200 x 10 kB, longest hold of the main thread", hold, "ms");
}

double growthKiB(OurClient& client, const std::string& url, const std::string& file) {
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts anew
  const double before = statusKiB("VmRSS");
  client.upload(url, file, 1);
  return statusKiB("VmHWM") - before;
}

}  // namespace
}  // namespace orivex::bench

int main() {
  using namespace orivex;
  const bench::SinkServer server;
  const TemporaryFolder folder;
  const auto small = bench::makeFile(folder, 10'000);
  const auto middle = bench::makeFile(folder, 16 * bench::mebibyte);
  const auto large = bench::makeFile(folder, 256 * bench::mebibyte);
  bench::OurClient client;
  client.upload(server.url(), small, 1);  // opens the connection
  bench::print("growth of the process, 16 MiB", bench::growthKiB(client, server.url(), middle), "KiB");
  bench::print("growth of the process, 256 MiB", bench::growthKiB(client, server.url(), large), "KiB");
  bench::measureLargeFile(client, server.url(), large, bench::makeFile(folder, 0));
  bench::measureSmallFiles(client, server.url(), small);
  return 0;
}

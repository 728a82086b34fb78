#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <glib.h>

#include "Bench.h"
#include "Corpus.h"
#include "Yardstick.h"

#include "orivex/models/Base64.h"
#include "orivex/models/Codec.h"

namespace orivex::bench {
namespace {

/// A piece of work, and the shortest time that it took: what else the machine does can only make it slower.
struct Work {
  std::function<void()> run;
  double milliseconds = std::numeric_limits<double>::infinity();
};
using Works = std::map<std::string, Work>;

/// Keeps the compiler from leaving out what made the value.
template <class Value>
void keep(const Value& value) {
  asm volatile("" : : "r"(&value) : "memory");
}

void addRecords(Works& works, const std::string& name, const Corpus& corpus) {
  works["decode ours/" + name].run = [&corpus] {
    for (const auto& text : corpus.texts) keep(decode<MessageModel>(text));
  };
  works["decode by nlohmann/" + name].run = [&corpus] {
    for (const auto& text : corpus.texts) keep(decodeByTree(text));
  };
  works["encode ours/" + name].run = [&corpus] {
    for (const auto& record : corpus.records) keep(encode(record));
  };
  // From record to text by way of a tree, which is what a program has to do; and the tree's text alone.
  works["encode by nlohmann/" + name].run = [&corpus] {
    for (const auto& record : corpus.records) keep(treeOf(record).dump());
  };
  std::vector<nlohmann::json> trees;
  for (const auto& record : corpus.records) trees.push_back(treeOf(record));
  works["dump by nlohmann/" + name].run = [trees = std::move(trees)] {
    for (const auto& tree : trees) keep(tree.dump());
  };
}

void addBase64(Works& works) {
  // A photo as the page gets it.
  Bytes photo(4'000'001);
  for (std::size_t i = 0; i < photo.size(); ++i) photo[i] = static_cast<std::uint8_t>(i * i >> 3U);
  works["base64 encode/ours"].run = [photo] { keep(base64Encode(photo)); };
  works["base64 decode/ours"].run = [text = base64Encode(photo)] { keep(base64Decode(text)); };
  works["base64 decode/glib"].run = [text = base64Encode(photo)] {
    gsize size = 0;
    g_free(g_base64_decode(text.c_str(), &size));
  };
  works["base64 encode/glib"].run = [photo = std::move(photo)] { g_free(g_base64_encode(photo.data(), photo.size())); };
}

/// Each several times for a while, in random order, so that what else the machine does hits all alike.
void measure(Works& works) {
  constexpr int repetitions = 15;
  constexpr double leastMilliseconds = 50;
  std::vector<Work*> order;
  for (auto& [name, work] : works) order.push_back(&work);
  std::mt19937 random;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    std::shuffle(order.begin(), order.end(), random);
    for (auto* const work : order) {
      const double start = threadMilliseconds();
      double passed = 0;
      int runs = 0;
      while (passed < leastMilliseconds) {
        work->run();
        ++runs;
        passed = threadMilliseconds() - start;
      }
      work->milliseconds = std::min(work->milliseconds, passed / runs);
    }
  }
}

void printResults(const Works& works, const std::vector<std::string>& names) {
  for (const auto& [name, work] : works) std::printf("%-34s %10.1f us\n", name.c_str(), work.milliseconds * 1000);
  const auto ratio = [&](const std::string& fast, const std::string& slow) {
    return works.at(slow).milliseconds / works.at(fast).milliseconds;
  };
  std::printf("\n%-14s %18s %18s %18s\n", "", "decode:", "encode:", "encode:");
  std::printf("%-14s %18s %18s %18s\n", "times as fast", "as nlohmann", "as nlohmann dump", "as nlohmann");
  for (const auto& name : names) {
    std::printf("%-14s %18.2f %18.2f %18.2f\n", name.c_str(),
                ratio("decode ours/" + name, "decode by nlohmann/" + name),
                ratio("encode ours/" + name, "dump by nlohmann/" + name),
                ratio("encode ours/" + name, "encode by nlohmann/" + name));
  }
  std::printf("\nBase64, times as fast as GLib: encode %.2f, decode %.2f\n",
              ratio("base64 encode/ours", "base64 encode/glib"), ratio("base64 decode/ours", "base64 decode/glib"));
}

}  // namespace
}  // namespace orivex::bench

int main() {
  using namespace orivex::bench;
  Works works;
  std::vector<std::string> names{"mixed"};
  addRecords(works, "mixed", mixedCorpus());
  for (const Kind kind : {Kind::asciiText, Kind::chineseText, Kind::media, Kind::card, Kind::image}) {
    names.emplace_back(nameOf(kind));
    addRecords(works, names.back(), corpusOf(kind));
  }
  addBase64(works);
  measure(works);
  printResults(works, names);
  return 0;
}

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Corpus.h"
#include "Yardstick.h"

#include "orivex/models/Codec.h"

namespace orivex::bench {
namespace {

template <class Decode>
void decodeAll(benchmark::State& state, const Corpus& corpus, Decode&& decodeOne) {
  for ([[maybe_unused]] auto _ : state) {
    for (const std::string& text : corpus.texts) benchmark::DoNotOptimize(decodeOne(text));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(corpus.bytes));
}

void encodeOurs(benchmark::State& state, const Corpus& corpus) {
  for ([[maybe_unused]] auto _ : state) {
    for (const MessageModel& record : corpus.records) benchmark::DoNotOptimize(encode(record));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(corpus.bytes));
}

/// The tree's text alone, the tree being there already.
void encodeTree(benchmark::State& state, const Corpus& corpus) {
  std::vector<nlohmann::json> trees;
  for (const MessageModel& record : corpus.records) trees.push_back(treeOf(record));
  for ([[maybe_unused]] auto _ : state) {
    for (const nlohmann::json& tree : trees) benchmark::DoNotOptimize(tree.dump());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(corpus.bytes));
}

/// From record to text by way of a tree, which is what a program has to do.
void encodeByTree(benchmark::State& state, const Corpus& corpus) {
  for ([[maybe_unused]] auto _ : state) {
    for (const MessageModel& record : corpus.records) benchmark::DoNotOptimize(treeOf(record).dump());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(corpus.bytes));
}

void registerFor(const std::string& name, const Corpus& corpus) {
  const auto add = [&](const std::string& what, auto run) {
    benchmark::RegisterBenchmark((what + "/" + name).c_str(), run)->Unit(benchmark::kMicrosecond);
  };
  add("decode ours", [&corpus](benchmark::State& state) { decodeAll(state, corpus, decode<MessageModel>); });
  add("decode by nlohmann", [&corpus](benchmark::State& state) { decodeAll(state, corpus, decodeByTree); });
  add("encode ours", [&corpus](benchmark::State& state) { encodeOurs(state, corpus); });
  add("dump by nlohmann", [&corpus](benchmark::State& state) { encodeTree(state, corpus); });
  add("encode by nlohmann", [&corpus](benchmark::State& state) { encodeByTree(state, corpus); });
}

/// Keeps the best time of each benchmark: what else the machine does can only make it slower.
class BestTimes : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double time = run.GetAdjustedCPUTime();
      const auto [best, isFirst] = microseconds_.try_emplace(run.run_name.function_name, time);
      if (!isFirst) best->second = std::min(best->second, time);
    }
  }

  void print() const {
    for (const auto& [name, time] : microseconds_) std::printf("%-34s %10.1f us\n", name.c_str(), time);
  }

  /// How many times as fast one benchmark is as another.
  double ratio(const std::string& fast, const std::string& slow) const {
    return microseconds_.at(slow) / microseconds_.at(fast);
  }

 private:
  std::map<std::string, double> microseconds_;
};

void printRatios(const BestTimes& best, const std::vector<std::string>& names) {
  std::printf("\n%-14s %18s %18s %18s\n", "", "decode:", "encode:", "encode:");
  std::printf("%-14s %18s %18s %18s\n", "times as fast", "as nlohmann", "as nlohmann dump", "as nlohmann");
  for (const std::string& name : names) {
    std::printf("%-14s %18.2f %18.2f %18.2f\n", name.c_str(),
                best.ratio("decode ours/" + name, "decode by nlohmann/" + name),
                best.ratio("encode ours/" + name, "dump by nlohmann/" + name),
                best.ratio("encode ours/" + name, "encode by nlohmann/" + name));
  }
  std::printf("\nBase64, times as fast as GLib: encode %.2f, decode %.2f\n",
              best.ratio("base64 encode/ours", "base64 encode/glib"),
              best.ratio("base64 decode/ours", "base64 decode/glib"));
}

int run(char* program) {
  // Repetitions in random order, so that what else the machine does hits all alike.
  std::array<std::string, 4> options{program, "--benchmark_repetitions=15", "--benchmark_min_time=0.05",
                                     "--benchmark_enable_random_interleaving=true"};
  std::array<char*, options.size()> arguments{};
  std::transform(options.begin(), options.end(), arguments.begin(), [](std::string& option) { return option.data(); });
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());

  std::vector<std::string> names{"mixed"};
  registerFor("mixed", mixedCorpus());
  for (const Kind kind : {Kind::asciiText, Kind::chineseText, Kind::media, Kind::card, Kind::image}) {
    names.emplace_back(nameOf(kind));
    registerFor(names.back(), corpusOf(kind));
  }
  BestTimes best;
  benchmark::RunSpecifiedBenchmarks(&best);
  best.print();
  printRatios(best, names);
  return 0;
}

}  // namespace
}  // namespace orivex::bench

int main(int, char** argv) {
  return orivex::bench::run(argv[0]);
}

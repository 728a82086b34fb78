#include "Bench.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>

#include <malloc.h>

namespace orivex::bench {

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double largest(const std::vector<double>& values) {
  return *std::max_element(values.begin(), values.end());
}

double statusKiB(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double value = 0;
    if (word == name + ":" && status >> value) return value;
  }
  return 0;
}

double heapKiB() {
  const auto used = mallinfo2();
  return static_cast<double>(used.uordblks + used.hblkhd) / 1024;  // inside the allocator's regions, and beside them
}

int openDescriptors() {
  return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

double milliseconds() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double threadMilliseconds() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

void print(const std::string& name, double value, const std::string& unit) {
  std::printf("%-62s %10.3f %s\n", name.c_str(), value, unit.c_str());
  std::fflush(stdout);
}

}  // namespace orivex::bench

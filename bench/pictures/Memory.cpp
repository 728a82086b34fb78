#include "Memory.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace orivex::bench {
namespace {

double statusBytes(const std::string& name) {
  constexpr double kibibyte = 1024;
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double value = 0;
    if (word == name + ":" && status >> value) return value * kibibyte;
  }
  return 0;
}

}  // namespace

double growth(const std::function<void()>& work) {
  const double before = statusBytes("VmRSS");
  work();
  return statusBytes("VmHWM") - before;
}

double askFreshProcess(const std::string& arguments) {
  const auto program = std::filesystem::read_symlink("/proc/self/exe").string();
  std::FILE* const output = popen(("'" + program + "' " + arguments).c_str(), "r");
  double number = 0;
  if (!output || std::fscanf(output, "%lf", &number) != 1 || pclose(output) != 0) std::abort();
  return number;
}

}  // namespace orivex::bench

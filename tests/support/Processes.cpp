#include "Processes.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include <unistd.h>

namespace orivex::gtk {
namespace {

struct Process {
  int id = 0;
  int parent = 0;
  std::string name;
};

std::vector<Process> allProcesses() {
  std::vector<Process> processes;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    Process process;
    std::string state;
    if (file >> process.id >> process.name >> state >> process.parent && state != "Z") processes.push_back(process);
  }
  return processes;
}

}  // namespace

std::ptrdiff_t entriesOf(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}

bool holdsOpen(const std::string& path) {
  std::error_code closedMeanwhile;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    if (std::filesystem::read_symlink(entry, closedMeanwhile).string().starts_with(path)) return true;
  }
  return false;
}

std::vector<int> processesBelow(const std::string& name) {
  const auto processes = allProcesses();
  std::set<int> ours{getpid()};
  std::vector<int> found;
  for (bool grew = true; grew;) {
    grew = false;
    for (const auto& process : processes) {
      if (!ours.contains(process.parent) || !ours.insert(process.id).second) continue;
      grew = true;
      if (process.name.find(name) != std::string::npos) found.push_back(process.id);
    }
  }
  return found;
}

std::string figureOf(int process, const std::string& name) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return line.substr(name.size());
  }
  return {};
}

}  // namespace orivex::gtk

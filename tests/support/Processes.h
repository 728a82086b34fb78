#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// What the system knows of this process and of those that it has started.
namespace orivex::gtk {

/// How many entries a folder has: of "/proc/self/fd" the open files, of "/proc/self/task" the threads.
std::ptrdiff_t entriesOf(const char* folder);

/// Whether this process has a file open whose path begins like this.
bool holdsOpen(const std::string& path);

/// The running processes below this one, through a sandbox's own in between, whose names contain `name`.
std::vector<int> processesBelow(const std::string& name);

/// How many processes of pages run.
inline std::size_t pageProcesses() {
  return processesBelow("WebKitWebProces").size();
}

inline std::vector<int> decoderProcesses() {
  return processesBelow("OrivexDecoder");
}

/// What /proc tells of a process under `name`; empty when it tells nothing.
std::string figureOf(int process, const std::string& name);

}  // namespace orivex::gtk

#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "FolderBundle.h"
#include "GlibMainQueue.h"
#include "decoding/Decoder.h"

#include "orivex/gtk/Gtk.h"

namespace orivex::gtk {

struct OwnQueue {
  GlibMainQueue queue;
};

/// Decoders of a test's own, by the program of the build.
struct TestDecoder : private OwnQueue, Decoder {
  TestDecoder()
      : Decoder(queue,
                FolderBundle::besideLibrary(reinterpret_cast<const void*>(&install)).pathOf("decoder/OrivexDecoder")) {}
};

/// What the system tells of a process under `name`; empty when it tells nothing.
inline std::string figureOf(const std::filesystem::path& process, const std::string& name) {
  std::ifstream status(process / "status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return line.substr(name.size());
  }
  return {};
}

/// The folders in /proc of the processes that this one has started and that still run.
inline std::vector<std::filesystem::path> childProcesses() {
  std::vector<std::filesystem::path> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    if (figureOf(entry.path(), "PPid:\t") == std::to_string(getpid())) found.push_back(entry.path());
  }
  return found;
}

}  // namespace orivex::gtk

#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>

#include <glib.h>

#include "glib/GMemory.h"

namespace orivex::gtk {

/// A folder that goes with this object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    const GCharPtr path(g_dir_make_tmp("orivex-test-XXXXXX", nullptr));
    path_ = path.get();
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    // A thread of a library may still be writing what it remembers of the folder.
    std::error_code error;
    for (int tries = 0; tries < 20; ++tries) {
      std::filesystem::remove_all(path_, error);
      if (!error) return;
      g_usleep(50'000);
    }
  }

  const std::filesystem::path& path() const { return path_; }

  /// Writes a file, with its folders, and returns its path.
  std::filesystem::path write(const std::filesystem::path& name, std::string_view contents) const {
    auto file = path_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << contents;
    return file;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace orivex::gtk

#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

namespace orivex {

/// A folder that goes with this object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "orivex-test-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    // A thread of a library may still be writing what it remembers of the folder.
    std::error_code error;
    for (int tries = 0; tries < 20; ++tries) {
      std::filesystem::remove_all(path_, error);
      if (!error) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
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

}  // namespace orivex

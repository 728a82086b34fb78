#pragma once

#include <memory>
#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"

namespace orivex::gtk {

/// A file in memory that nobody else finds, gone with this object. Any thread.
class ScratchFile {
 public:
  static std::variant<std::shared_ptr<ScratchFile>, Failure> make();

  explicit ScratchFile(int descriptor) : descriptor_(descriptor) {}
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  /// Opens it, for this process alone and whatever happens to the folders meanwhile.
  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  const int descriptor_;
};

}  // namespace orivex::gtk

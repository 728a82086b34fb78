#pragma once

#include <memory>
#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/ports/DocumentPicker.h"

namespace orivex::gtk {

/// A file that is held open for reading. As long as one is, a document that the desktop lent to a sandbox stays in
/// reach, and a disk with it cannot be taken away.
class HeldFile final : public FileAccess {
 public:
  /// A failure in the system's words when the file cannot be opened or is not a regular one. Waits for no other end of
  /// a pipe.
  static std::variant<std::unique_ptr<FileAccess>, Failure> open(const std::string& path);

  ~HeldFile() override;

 private:
  explicit HeldFile(int descriptor) : descriptor_(descriptor) {}

  const int descriptor_;
};

}  // namespace orivex::gtk

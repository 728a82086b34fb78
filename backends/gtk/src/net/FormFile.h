#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "orivex/platform/ports/HttpClient.h"

namespace orivex::gtk {

/// The regular file of a form's part, read piece by piece by a descriptor of its own: who deletes or replaces the file
/// meanwhile changes nothing. Its size is fixed once it is open. Any thread, one at a time.
class FormFile {
 public:
  explicit FormFile(FilePart::Path path) : path_(std::move(path.value)), overwrites_(std::move(path.overwrites)) {}
  FormFile(const FormFile&) = delete;
  FormFile& operator=(const FormFile&) = delete;
  ~FormFile();

  /// False when the file cannot be read; `failure` then says why. May block.
  bool open();

  /// Reads up to `length` bytes at `at`, which is before the end. Returns their number, or 0 when they cannot be read;
  /// `failure` then says why.
  std::size_t read(std::int64_t at, char* buffer, std::size_t length);

  std::int64_t size() const { return size_; }
  const std::string& failure() const { return failure_; }

 private:
  bool fail(const std::string& reason);

  const std::string path_;
  const std::vector<Overwrite> overwrites_;
  int descriptor_ = -1;
  std::int64_t size_ = 0;
  std::string failure_;
};

}  // namespace orivex::gtk

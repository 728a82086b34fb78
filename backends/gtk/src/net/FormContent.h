#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "orivex/platform/ports/Upload.h"

namespace orivex::gtk {

/// The content of a form's part, read piece by piece. Its size is fixed once it is open. Any thread, one at a time.
class FormContent {
 public:
  static std::unique_ptr<FormContent> of(FilePart::Path path);
  static std::unique_ptr<FormContent> of(FilePart::Bytes bytes);

  FormContent() = default;
  FormContent(const FormContent&) = delete;
  FormContent& operator=(const FormContent&) = delete;
  virtual ~FormContent() = default;

  /// False when the content cannot be read; `failure` then says why. May block.
  virtual bool open() = 0;

  /// Reads up to `length` bytes at `at`, which is before the end. Returns their number, or 0 when they cannot be read;
  /// `failure` then says why.
  virtual std::size_t read(std::int64_t at, char* buffer, std::size_t length) = 0;

  std::int64_t size() const { return size_; }
  const std::string& failure() const { return failure_; }

 protected:
  std::int64_t size_ = 0;
  std::string failure_;
};

}  // namespace orivex::gtk

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include "Expect.h"

namespace orivex::fuzz {

/// A file in memory that holds an input, for what reads files by their paths.
class InputFile {
 public:
  InputFile(const void* data, std::size_t size) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
    expect(write(descriptor_, data, size) == static_cast<ssize_t>(size), "an input fits into memory");
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() { close(descriptor_); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  const int descriptor_;
};

}  // namespace orivex::fuzz

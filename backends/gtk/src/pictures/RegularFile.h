#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <variant>

#include "orivex/platform/base/Failure.h"

namespace orivex::gtk {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

using FilePtr = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a regular file that is not empty for reading. Anything else, a pipe without a writer included, is a failure at
/// once.
std::variant<FilePtr, Failure> openRegularFile(const std::string& path);

}  // namespace orivex::gtk

#include "RegularFile.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

Failure systemFailure(const std::string& path) {
  return Failure{path + " cannot be read: " + std::generic_category().message(errno)};
}

}  // namespace

std::variant<FilePtr, Failure> openRegularFile(const std::string& path) {
  // Opening a pipe otherwise waits for its writer.
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) return systemFailure(path);
  FilePtr file(fdopen(descriptor, "rb"));
  if (!file) {
    auto failure = systemFailure(path);
    close(descriptor);
    return failure;
  }
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return systemFailure(path);
  if (!S_ISREG(status.st_mode)) return Failure{path + " is not a file"};
  if (status.st_size == 0) return Failure{path + " is empty"};
  return file;
}

}  // namespace orivex::gtk

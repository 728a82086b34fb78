#include "FormFile.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

std::string errorText() {
  return std::generic_category().message(errno);
}

// To the stretch of the file at `at` that `buffer` holds.
void apply(const Overwrite& change, std::int64_t at, char* buffer, std::int64_t length) {
  const auto first = std::max(change.at, at);
  const auto end = std::min(change.at + change.length, at + length);
  for (auto place = first; place < end; ++place) {
    const auto index = static_cast<std::size_t>(place - change.at);
    buffer[place - at] = index < change.bytes.size() ? change.bytes[index] : '\0';
  }
}

}  // namespace

FormFile::~FormFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

bool FormFile::open() {
  // Without O_NONBLOCK, opening a named pipe that nobody writes to never returns.
  descriptor_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  struct stat status {};
  if (descriptor_ < 0 || fstat(descriptor_, &status) != 0) return fail(errorText());
  if (!S_ISREG(status.st_mode)) return fail("it is not a regular file");
  size_ = status.st_size;
  return true;
}

std::size_t FormFile::read(std::int64_t at, char* buffer, std::size_t length) {
  const auto wanted = std::min(length, static_cast<std::size_t>(size_ - at));
  ssize_t got = 0;
  do {
    got = pread(descriptor_, buffer, wanted, at);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) {
    fail(got < 0 ? errorText() : "it became shorter while it was being sent");
    return 0;
  }
  for (const auto& change : overwrites_) apply(change, at, buffer, got);
  return static_cast<std::size_t>(got);
}

bool FormFile::fail(const std::string& reason) {
  failure_ = "The file cannot be read: " + reason;
  return false;
}

}  // namespace orivex::gtk

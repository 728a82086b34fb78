#include "FormContent.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

// A regular file, by a descriptor of its own: who deletes or replaces the file meanwhile changes nothing.
class FileContent final : public FormContent {
 public:
  explicit FileContent(FilePart::Path path) : path_(std::move(path.value)), overwrites_(std::move(path.overwrites)) {}
  ~FileContent() override {
    if (descriptor_ >= 0) close(descriptor_);
  }

  bool open() override {
    // Without O_NONBLOCK, opening a named pipe that nobody writes to never returns.
    descriptor_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    struct stat status {};
    if (descriptor_ < 0 || fstat(descriptor_, &status) != 0) return failBy(errno);
    if (!S_ISREG(status.st_mode)) return fail("it is not a regular file");
    size_ = status.st_size;
    return true;
  }

  std::size_t read(std::int64_t at, char* buffer, std::size_t length) override {
    const auto wanted = std::min(length, static_cast<std::size_t>(size_ - at));
    ssize_t got = 0;
    do {
      got = pread(descriptor_, buffer, wanted, at);
    } while (got < 0 && errno == EINTR);
    if (got > 0) {
      for (const auto& change : overwrites_) apply(change, at, buffer, got);
      return static_cast<std::size_t>(got);
    }
    got < 0 ? failBy(errno) : fail("it became shorter while it was being sent");
    return 0;
  }

 private:
  // To the stretch of the file at `at` that `buffer` holds.
  static void apply(const Overwrite& change, std::int64_t at, char* buffer, std::int64_t length) {
    const auto first = std::max(change.at, at);
    const auto end = std::min(change.at + change.length, at + length);
    for (auto place = first; place < end; ++place) {
      const auto index = static_cast<std::size_t>(place - change.at);
      buffer[place - at] = index < change.bytes.size() ? change.bytes[index] : '\0';
    }
  }

  bool failBy(int code) { return fail(std::generic_category().message(code)); }
  bool fail(const std::string& reason) {
    failure_ = "The file cannot be read: " + reason;
    return false;
  }

  const std::string path_;
  const std::vector<Overwrite> overwrites_;
  int descriptor_ = -1;
};

class BytesContent final : public FormContent {
 public:
  explicit BytesContent(std::string bytes) : bytes_(std::move(bytes)) {
    size_ = static_cast<std::int64_t>(bytes_.size());
  }

  bool open() override { return true; }
  std::size_t read(std::int64_t at, char* buffer, std::size_t length) override {
    return bytes_.copy(buffer, length, static_cast<std::size_t>(at));
  }

 private:
  std::string bytes_;
};

}  // namespace

std::unique_ptr<FormContent> FormContent::of(FilePart::Path path) {
  return std::make_unique<FileContent>(std::move(path));
}

std::unique_ptr<FormContent> FormContent::of(FilePart::Bytes bytes) {
  return std::make_unique<BytesContent>(std::move(bytes.value));
}

}  // namespace orivex::gtk

#include "HeldFile.h"

#include <cerrno>

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orivex::gtk {

std::variant<std::unique_ptr<FileAccess>, Failure> HeldFile::open(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return Failure{g_strerror(errno)};
  std::unique_ptr<FileAccess> held(new HeldFile(descriptor));
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return Failure{g_strerror(errno)};
  if (S_ISDIR(status.st_mode)) return Failure{g_strerror(EISDIR)};
  if (!S_ISREG(status.st_mode)) return Failure{g_strerror(EINVAL)};
  return held;
}

HeldFile::~HeldFile() {
  close(descriptor_);
}

}  // namespace orivex::gtk

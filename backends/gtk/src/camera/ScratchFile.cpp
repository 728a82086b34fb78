#include "ScratchFile.h"

#include <cerrno>

#include <glib.h>
#include <sys/mman.h>
#include <unistd.h>

namespace orivex::gtk {

std::variant<std::shared_ptr<ScratchFile>, Failure> ScratchFile::make() {
  const int descriptor = memfd_create("orivex-scratch", MFD_CLOEXEC);
  if (descriptor < 0) return Failure{g_strerror(errno)};
  return std::make_shared<ScratchFile>(descriptor);
}

ScratchFile::~ScratchFile() {
  close(descriptor_);
}

}  // namespace orivex::gtk

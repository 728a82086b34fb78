#include "ConsentFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <unistd.h>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr char key[] = "microphone";
constexpr int ownerOnlyFolder = 0700;
constexpr int ownerOnlyFile = 0600;

// The name of a group holds neither brackets nor control characters.
std::string groupOf(const std::string& applicationId) {
  const GCharPtr escaped(g_uri_escape_string(applicationId.c_str(), nullptr, TRUE));
  return escaped.get();
}

GKeyFilePtr load(const std::string& path) {
  GKeyFilePtr file(g_key_file_new());
  const bool whole = g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
  return whole ? std::move(file) : GKeyFilePtr(g_key_file_new());
}

}  // namespace

ConsentFile::ConsentFile(std::string path, const std::string& applicationId)
    : path_(std::move(path)), group_(groupOf(applicationId)) {}

std::string ConsentFile::defaultPath() {
  const GCharPtr path(g_build_filename(g_get_user_state_dir(), "orivex-sdk", "permissions.ini", nullptr));
  return path.get();
}

std::optional<bool> ConsentFile::answer() const {
  GError* raised = nullptr;
  const bool allowed = g_key_file_get_boolean(load(path_).get(), group_.c_str(), key, &raised);
  return GErrorPtr(raised) ? std::nullopt : std::optional(allowed);
}

void ConsentFile::remember(bool allowed) const {
  const auto file = load(path_);
  g_key_file_set_boolean(file.get(), group_.c_str(), key, allowed);
  const GCharPtr text(g_key_file_to_data(file.get(), nullptr, nullptr));
  const GCharPtr folder(g_path_get_dirname(path_.c_str()));
  g_mkdir_with_parents(folder.get(), ownerOnlyFolder);
  // Without waiting for the disk: an answer that a power failure takes is asked for again.
  const auto fresh = path_ + ".new";
  ::unlink(fresh.c_str());
  GError* raised = nullptr;
  g_file_set_contents_full(fresh.c_str(), text.get(), -1, G_FILE_SET_CONTENTS_NONE, ownerOnlyFile, &raised);
  const GErrorPtr error(raised);
  if (error || ::rename(fresh.c_str(), path_.c_str()) != 0) {
    log::print("Cannot remember the answer: " + std::string(error ? error->message : std::strerror(errno)));
  }
}

}  // namespace orivex::gtk

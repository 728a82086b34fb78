#include "KeyFileUserDefaults.h"

#include <utility>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr char group[] = "Defaults";

}  // namespace

std::string KeyFileUserDefaults::defaultPath() {
  const GCharPtr path(g_build_filename(g_get_user_config_dir(), "orivex-sdk", "defaults.ini", nullptr));
  return path.get();
}

bool KeyFileUserDefaults::boolForKey(std::string_view key) const {
  return g_key_file_get_boolean(load().get(), group, std::string(key).c_str(), nullptr);
}

std::optional<std::string> KeyFileUserDefaults::stringForKey(std::string_view key) const {
  const GCharPtr value(g_key_file_get_string(load().get(), group, std::string(key).c_str(), nullptr));
  if (!value) return std::nullopt;
  return value.get();
}

GKeyFilePtr KeyFileUserDefaults::load() const {
  GKeyFilePtr file(g_key_file_new());
  GError* raised = nullptr;
  g_key_file_load_from_file(file.get(), path_.c_str(), G_KEY_FILE_NONE, &raised);
  const GErrorPtr error(raised);
  // No file is what most visitors have.
  const bool missing = g_error_matches(error.get(), G_FILE_ERROR, G_FILE_ERROR_NOENT);
  std::string failure = error && !missing ? error->message : "";
  if (!failure.empty() && failure != lastFailure_) log::warning("No user defaults from " + path_ + ": " + failure);
  lastFailure_ = std::move(failure);
  // What a broken file holds before the fault must not count.
  return error ? GKeyFilePtr(g_key_file_new()) : std::move(file);
}

}  // namespace orivex::gtk

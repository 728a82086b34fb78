#include "Settings.h"

#include <array>
#include <iostream>
#include <utility>

#include "../base/GObjects.h"

namespace orivex::demo {
namespace {

constexpr char group[] = "Visit";
constexpr char pushKey[] = "Push";

constexpr std::array texts{std::pair{"Server", &Settings::server}, std::pair{"EntryId", &Settings::entryId},
                           std::pair{"Key", &Settings::key}, std::pair{"VisitorId", &Settings::visitorId},
                           std::pair{"VisitorName", &Settings::visitorName}};
constexpr std::array lengths{std::pair{"StatusBarHeight", &Settings::statusBarHeight},
                             std::pair{"TopInset", &Settings::topInset},
                             std::pair{"BottomInset", &Settings::bottomInset}};

std::string path() {
  const CharPtr text(g_build_filename(g_get_user_config_dir(), "orivex-demo", "settings.ini", nullptr));
  return text.get();
}

}  // namespace

Settings loadSettings() {
  Settings settings;
  const KeyFilePtr file(g_key_file_new());
  if (!g_key_file_load_from_file(file.get(), path().c_str(), G_KEY_FILE_NONE, nullptr)) return settings;
  const auto has = [&file](const char* key) { return g_key_file_has_key(file.get(), group, key, nullptr) != FALSE; };
  for (const auto& [key, field] : texts) {
    const CharPtr value(g_key_file_get_string(file.get(), group, key, nullptr));
    if (value) settings.*field = value.get();
  }
  for (const auto& [key, field] : lengths)
    if (has(key)) settings.*field = g_key_file_get_double(file.get(), group, key, nullptr);
  settings.push = g_key_file_get_boolean(file.get(), group, pushKey, nullptr) != FALSE;
  return settings;
}

void saveSettings(const Settings& settings) {
  const KeyFilePtr file(g_key_file_new());
  for (const auto& [key, field] : texts) g_key_file_set_string(file.get(), group, key, (settings.*field).c_str());
  for (const auto& [key, field] : lengths) g_key_file_set_double(file.get(), group, key, settings.*field);
  g_key_file_set_boolean(file.get(), group, pushKey, settings.push);

  const CharPtr folder(g_path_get_dirname(path().c_str()));
  g_mkdir_with_parents(folder.get(), 0700);
  GError* raised = nullptr;
  g_key_file_save_to_file(file.get(), path().c_str(), &raised);
  if (const ErrorPtr error(raised); error) std::cerr << "Cannot remember the settings: " << error->message << '\n';
}

}  // namespace orivex::demo

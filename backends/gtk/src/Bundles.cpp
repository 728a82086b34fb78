#include "Bundles.h"

#include <cerrno>
#include <system_error>

#include <dlfcn.h>
#include <gio/gdesktopappinfo.h>
#include <link.h>
#include <simdjson.h>
#include <unistd.h>

#include "glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

// The file from which the loader mapped `address`; empty when it is in none. The program itself has an empty name in
// the loader's list: what it was started as need not be a path.
fs::path fileThatHolds(const void* address) {
  Dl_info information{};
  link_map* map = nullptr;
  if (dladdr1(address, &information, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0) return {};
  std::error_code failure;
  return fs::canonical(map->l_name[0] != '\0' ? map->l_name : "/proc/self/exe", failure);
}

bool isReadableFile(const fs::path& path) {
  std::error_code failure;
  return fs::is_regular_file(path, failure) && access(path.c_str(), R_OK) == 0;
}

std::optional<InfoValue> infoValue(const simdjson::dom::element& value) {
  if (value.is_string()) return InfoValue(std::string(value.get_string().value_unsafe()));
  if (value.is_bool()) return InfoValue(value.get_bool().value_unsafe());
  if (value.is_number()) return InfoValue(value.get_double().value_unsafe());
  return std::nullopt;
}

std::optional<InfoDictionary> readInformation(const fs::path& path) {
  if (!isReadableFile(path)) return std::nullopt;
  simdjson::dom::parser parser;
  simdjson::dom::object object;
  if (const auto error = parser.load(path.string()).get_object().get(object)) {
    log::warning("No bundle information from " + path.string() + ": " + simdjson::error_message(error));
    return std::nullopt;
  }
  InfoDictionary dictionary;
  for (const auto [key, element] : object) {
    if (auto value = infoValue(element)) dictionary.insert_or_assign(std::string(key), *std::move(value));
  }
  return dictionary;
}

std::optional<std::string> nameInDesktopEntry(const std::string& applicationId) {
  const auto entry = GRef<GDesktopAppInfo>::adopt(g_desktop_app_info_new((applicationId + ".desktop").c_str()));
  if (!entry) return std::nullopt;
  return g_app_info_get_name(G_APP_INFO(entry.get()));
}

// GLib answers with the program's name while no application name was set.
std::optional<std::string> applicationName(std::string_view programName) {
  const char* const name = g_get_application_name();
  if (!name || name == programName) return std::nullopt;
  return name;
}

}  // namespace

FolderBundle::FolderBundle(fs::path folder)
    : folder_(std::move(folder)), information_(readInformation(folder_ / "Info.json")) {}

FolderBundle FolderBundle::besideLibrary(const void* addressInLibrary) {
  // Without links: the sandbox of the pages' processes is given this very folder.
  std::error_code failure;
  return FolderBundle(
      fs::weakly_canonical(fileThatHolds(addressInLibrary).parent_path() / "OrivexSDK.bundle", failure));
}

std::optional<std::string> FolderBundle::pathForResource(std::string_view name, std::string_view type) const {
  const auto path = folder_ / (std::string(name) + "." + std::string(type));
  if (!isReadableFile(path)) return std::nullopt;
  return path.string();
}

const std::optional<InfoDictionary>& DesktopEntryBundle::infoDictionary() const {
  if (!information_) information_ = gather();
  return information_;
}

InfoDictionary DesktopEntryBundle::gather() const {
  InfoDictionary dictionary;
  const char* const program = g_get_prgname();
  const std::string programName = program ? program : program_invocation_short_name;
  // A host without an identifier is known to the desktop by its program's name.
  auto displayName = nameInDesktopEntry(applicationId_.empty() ? programName : applicationId_);
  if (!displayName) displayName = applicationName(programName);
  if (displayName) dictionary.emplace("CFBundleDisplayName", *std::move(displayName));
  if (!programName.empty()) dictionary.emplace("CFBundleName", programName);
  if (!applicationId_.empty()) dictionary.emplace("CFBundleIdentifier", applicationId_);
  return dictionary;
}

}  // namespace orivex::gtk

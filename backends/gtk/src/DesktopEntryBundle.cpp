#include "DesktopEntryBundle.h"

#include <cerrno>
#include <string_view>

#include <gio/gdesktopappinfo.h>

#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

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

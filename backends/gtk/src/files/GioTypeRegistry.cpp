#include "GioTypeRegistry.h"

#include <cerrno>

#include <gio/gio.h>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"

namespace orivex::gtk {

std::optional<std::string> GioTypeRegistry::mimeType(std::string_view extension) const {
  // The database is asked for whole names: what would end the name or begin another one is no extension.
  if (extension.empty() || extension.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) {
    return std::nullopt;
  }
  const GCharPtr lower(g_ascii_strdown(extension.data(), static_cast<gssize>(extension.size())));
  const auto name = std::string("file.") + lower.get();
  const GCharPtr type(g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
  if (g_content_type_is_unknown(type.get())) return std::nullopt;
  const GCharPtr mime(g_content_type_get_mime_type(type.get()));
  return mime ? std::optional<std::string>(mime.get()) : std::nullopt;
}

std::variant<std::string, Failure> GioTypeRegistry::typeIdentifier(const std::string& path) const {
  // GIO would take an empty path for the current folder.
  if (path.empty()) return Failure{g_strerror(ENOENT)};
  const auto file = GRef<GFile>::adopt(g_file_new_for_path(path.c_str()));
  GError* raised = nullptr;
  const auto info = GRef<GFileInfo>::adopt(
      g_file_query_info(file.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE, G_FILE_QUERY_INFO_NONE, nullptr, &raised));
  const GErrorPtr error(raised);
  if (error) return Failure{error->message};
  const char* const type = g_file_info_get_content_type(info.get());
  if (!type) return Failure{"the file system names no type"};
  return type;
}

bool GioTypeRegistry::conformsToImage(const std::string& typeIdentifier) const {
  return g_content_type_is_a(typeIdentifier.c_str(), "image/*") != FALSE;
}

}  // namespace orivex::gtk

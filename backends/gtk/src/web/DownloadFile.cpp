#include "DownloadFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

// File systems take 255 bytes; a number and WebKit's own suffix for what is not complete must still fit.
constexpr std::size_t longestName = 200;
constexpr std::size_t longestExtension = 20;
constexpr int mostNumbers = 1000;

// What WebKit writes to before a download is complete.
constexpr const char* partialSuffix = ".wkdownload";

// Separators, control characters, and those that change the direction of writing: "cod\u202Efdp.exe" would read as a
// document.
bool isUnsafe(gunichar point) {
  return point == '/' || point == '\\' || g_unichar_iscntrl(point) || (point >= 0x200E && point <= 0x200F) ||
         (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

std::size_t cutBefore(const std::string& text, std::size_t bytes) {
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80) --bytes;
  return bytes;
}

std::string shortened(const std::string& name) {
  if (name.size() <= longestName) return name;
  auto extension = std::filesystem::path(name).extension().string();
  if (extension.size() > longestExtension) extension.clear();
  return name.substr(0, cutBefore(name, longestName - extension.size())) + extension;
}

bool takesFiles(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  return access(folder.c_str(), W_OK | X_OK) == 0;
}

}  // namespace

std::string safeFileName(std::string_view suggested) {
  const GCharPtr valid(g_utf8_make_valid(suggested.data(), static_cast<gssize>(suggested.size())));
  std::string name;
  for (const char* at = valid.get(); *at;) {
    const char* const next = g_utf8_next_char(at);
    name += isUnsafe(g_utf8_get_char(at)) ? "_" : std::string(at, next);
    at = next;
  }
  name.erase(0, std::min(name.find_first_not_of(". "), name.size()));
  name.erase(name.find_last_not_of(". ") + 1);
  return name.empty() ? "download" : shortened(name);
}

std::optional<std::filesystem::path> downloadFolder() {
  const char* const visitors = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
  if (visitors && takesFiles(visitors)) return visitors;
  const auto own = std::filesystem::path(g_get_user_data_dir()) / "orivex-sdk" / "downloads";
  return takesFiles(own) ? std::optional(own) : std::nullopt;
}

std::unique_ptr<DownloadFile> DownloadFile::make(const std::filesystem::path& folder, const std::string& name) {
  const auto stem = std::filesystem::path(name).stem().string();
  const auto extension = std::filesystem::path(name).extension().string();
  for (int number = 1; number <= mostNumbers; ++number) {
    auto numbered = stem;
    if (number > 1) numbered.append(" (").append(std::to_string(number)).append(")");
    const auto path = folder / numbered.append(extension);
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file >= 0) {
      close(file);
      return std::make_unique<DownloadFile>(path);
    }
    if (errno != EEXIST) return nullptr;
  }
  return nullptr;
}

DownloadFile::~DownloadFile() {
  if (kept_) return;
  unlink(path_.c_str());
  unlink((path_.string() + partialSuffix).c_str());
}

}  // namespace orivex::gtk

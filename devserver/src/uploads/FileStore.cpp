#include "FileStore.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <system_error>

#include <gio/gio.h>

#include "../http/GHandles.h"

namespace orivex::devserver {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t identifierDigits = 16;
constexpr std::size_t mostNameBytes = 120;

/// Cuts in front of the extension, at a character, so that the type still shows.
std::string shortened(const std::string& name) {
  if (name.size() <= mostNameBytes) return name;
  const auto dot = name.rfind('.');
  const auto suffix = dot != std::string::npos && name.size() - dot <= 16 ? name.substr(dot) : std::string();
  auto length = mostNameBytes - suffix.size();
  while ((static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) --length;
  return name.substr(0, length) + suffix;
}

std::string freshIdentifier() {
  std::random_device random;
  std::string digits;
  while (digits.size() < identifierDigits) digits += "0123456789abcdef"[random() % 16];
  return digits;
}

fs::path freshFolder() {
  GError* error = nullptr;
  const GCharPtr folder(g_dir_make_tmp("orivex-devserver-XXXXXX", &error));
  if (folder) return folder.get();
  const GErrorPtr owned(error);
  throw fs::filesystem_error(owned->message, std::make_error_code(std::errc::io_error));
}

}  // namespace

std::string safeFileName(std::string_view name) {
  const GCharPtr valid(g_utf8_make_valid(name.data(), static_cast<gssize>(name.size())));
  std::string safe = valid.get();
  safe.erase(0, safe.find_last_of("/\\") + 1);
  std::ranges::replace_if(
      safe, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, '_');
  safe.erase(0, std::min(safe.find_first_not_of('.'), safe.size()));
  return safe.empty() ? "file" : shortened(safe);
}

FileStore::FileStore(const std::optional<fs::path>& folder)
    : temporary_(!folder), folder_(folder ? *folder : freshFolder()) {
  fs::create_directories(folder_);
}

FileStore::~FileStore() {
  std::error_code ignored;
  if (temporary_) fs::remove_all(folder_, ignored);
}

std::optional<std::string> FileStore::add(std::string_view fileName, const std::string& givenType,
                                          std::string_view contents) {
  auto storedName = freshIdentifier() + "-" + safeFileName(fileName);
  const auto path = folder_ / storedName;
  std::ofstream stream(path, std::ios::binary);
  stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  stream.close();
  if (stream.fail()) {
    std::error_code ignored;
    fs::remove(path, ignored);
    return std::nullopt;
  }
  if (!givenType.empty()) givenTypes_[storedName] = givenType;
  return storedName;
}

std::string_view FileStore::displayName(std::string_view storedName) {
  return storedName.substr(identifierDigits + 1);
}

std::optional<fs::path> FileStore::find(std::string_view storedName) const {
  const bool ours = storedName.size() > identifierDigits + 1 && storedName[identifierDigits] == '-' &&
                    storedName.substr(0, identifierDigits).find_first_not_of("0123456789abcdef") == std::string::npos &&
                    safeFileName(displayName(storedName)) == displayName(storedName);
  std::error_code ignored;
  const auto path = folder_ / storedName;
  if (!ours || !fs::is_regular_file(fs::symlink_status(path, ignored))) return std::nullopt;
  return path;
}

std::string FileStore::typeOf(const std::string& storedName) const {
  char head[256];
  std::ifstream stream(folder_ / storedName, std::ios::binary);
  stream.read(head, sizeof head);
  gboolean uncertain = FALSE;
  const GCharPtr guess(g_content_type_guess(std::string(displayName(storedName)).c_str(),
                                            reinterpret_cast<const guchar*>(head), static_cast<gsize>(stream.gcount()),
                                            &uncertain));
  const GCharPtr type(g_content_type_get_mime_type(guess.get()));
  const std::string known = type ? type.get() : "application/octet-stream";
  const auto given = givenTypes_.find(storedName);
  const bool nothingKnown = known == "application/octet-stream" || known == "application/x-zerosize";
  return nothingKnown && given != givenTypes_.end() ? given->second : known;
}

}  // namespace orivex::devserver

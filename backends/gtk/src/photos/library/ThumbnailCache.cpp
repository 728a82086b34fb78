#include "ThumbnailCache.h"

#include <array>
#include <string_view>

#include <glib/gstdio.h>
#include <sys/stat.h>

#include "../../glib/GMemory.h"
#include "FolderScan.h"

namespace orivex::gtk {
namespace {

// Keys of the freedesktop thumbnail standard, as the pixbuf's PNG reader and writer name text chunks.
constexpr const char* uriKey = "tEXt::Thumb::URI";
constexpr const char* modifiedKey = "tEXt::Thumb::MTime";
constexpr const char* durationKey = "tEXt::Thumb::Movie::Length";  // seconds
constexpr const char* softwareKey = "tEXt::Software";
constexpr const char* software = "OrivexSDK";

// The name below which failures are kept: another version may succeed where this one has failed.
constexpr const char* program = "orivex-1";

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

std::string uriOf(const MediaItem& item) {
  const GCharPtr uri(g_filename_to_uri(item.path.c_str(), nullptr, nullptr));
  return uri ? uri.get() : "";
}

std::string fileName(const MediaItem& item) {
  const GCharPtr hash(g_compute_checksum_for_string(G_CHECKSUM_MD5, uriOf(item).c_str(), -1));
  return std::string(hash.get()) + ".png";
}

const char* folderName(ThumbnailSize size) {
  return size == ThumbnailSize::large ? "large" : "x-large";
}

std::string seconds(const MediaItem& item) {
  return std::to_string(item.modified / nanosecondsPerSecond);
}

// Programs that make thumbnails make small ones; anything else is foreign and belongs into a decoder.
bool isThumbnail(const std::filesystem::path& path) {
  constexpr int longestSide = 1024;
  int width = 0;
  int height = 0;
  auto* const format = gdk_pixbuf_get_file_info(path.c_str(), &width, &height);
  if (!format || width > longestSide || height > longestSide) return false;
  return GCharPtr(gdk_pixbuf_format_get_name(format)).get() == std::string_view("png");
}

GRef<GdkPixbuf> readFresh(const std::filesystem::path& path, const MediaItem& item) {
  if (!isThumbnail(path)) return nullptr;
  auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file(path.c_str(), nullptr));
  if (!picture) return nullptr;
  const char* const uri = gdk_pixbuf_get_option(picture.get(), uriKey);
  const char* const modified = gdk_pixbuf_get_option(picture.get(), modifiedKey);
  const bool isFresh = uri && modified && uri == uriOf(item) && modified == seconds(item);
  return isFresh ? picture : nullptr;
}

// As this program has noted it: another one may read with other limits.
std::optional<double> durationIn(GdkPixbuf* picture) {
  if (g_strcmp0(gdk_pixbuf_get_option(picture, softwareKey), software) != 0) return std::nullopt;
  const char* const text = gdk_pixbuf_get_option(picture, durationKey);
  return text ? std::optional(g_ascii_strtod(text, nullptr)) : std::nullopt;
}

// Modification times are kept in seconds: a file that changes twice in one would keep the first one's thumbnail.
bool isOldEnough(const MediaItem& item) {
  const auto now = FolderScan::itemAt(item.path, {});
  constexpr std::int64_t youth = 2;
  return now == item && g_get_real_time() / G_USEC_PER_SEC - item.modified / nanosecondsPerSecond >= youth;
}

void writePicture(const std::filesystem::path& path, const MediaItem& item, const Thumbnail& thumbnail) {
  std::array<char, G_ASCII_DTOSTR_BUF_SIZE> duration{};
  if (thumbnail.duration) g_ascii_dtostr(duration.data(), duration.size(), *thumbnail.duration);
  char* contents = nullptr;
  gsize length = 0;
  if (!gdk_pixbuf_save_to_buffer(thumbnail.picture.get(), &contents, &length, "png", nullptr, uriKey,
                                 uriOf(item).c_str(), modifiedKey, seconds(item).c_str(), softwareKey, software,
                                 thumbnail.duration ? durationKey : nullptr, duration.data(), nullptr)) {
    return;
  }
  const GCharPtr owned(contents);
  if (g_mkdir_with_parents(path.parent_path().c_str(), S_IRWXU) != 0) return;
  // The existing file alone is worth a wait for the disk: one that is lost is made again.
  constexpr auto atomically =
      static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_ONLY_EXISTING);
  g_file_set_contents_full(path.c_str(), contents, static_cast<gssize>(length), atomically, S_IRUSR | S_IWUSR, nullptr);
}

}  // namespace

ThumbnailCache ThumbnailCache::ofDesktop() {
  return ThumbnailCache(std::filesystem::path(g_get_user_cache_dir()) / "thumbnails");
}

std::filesystem::path ThumbnailCache::pathOf(const MediaItem& item, ThumbnailSize size) const {
  return folder_ / folderName(size) / fileName(item);
}

std::filesystem::path ThumbnailCache::failurePathOf(const MediaItem& item) const {
  return folder_ / "fail" / program / fileName(item);
}

std::optional<Thumbnail> ThumbnailCache::read(const MediaItem& item, ThumbnailSize size) const {
  auto picture = readFresh(pathOf(item, size), item);
  if (!picture) return std::nullopt;
  const auto duration = durationIn(picture.get());
  return Thumbnail{std::move(picture), duration};
}

bool ThumbnailCache::hasFailed(const MediaItem& item) const {
  return static_cast<bool>(readFresh(failurePathOf(item), item));
}

void ThumbnailCache::write(const MediaItem& item, ThumbnailSize size, const Thumbnail& thumbnail) const {
  if (isOldEnough(item)) writePicture(pathOf(item, size), item, thumbnail);
}

void ThumbnailCache::writeFailure(const MediaItem& item) const {
  if (!isOldEnough(item)) return;
  const auto dot = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, 1, 1));
  gdk_pixbuf_fill(dot.get(), 0);
  writePicture(failurePathOf(item), item, {dot, std::nullopt});
}

}  // namespace orivex::gtk

#include "MediaTexts.h"

#include <algorithm>
#include <cmath>

#include <glib.h>

#include "../../glib/GMemory.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

template <class... Args>
std::string formatted(const char* format, Args... args) {
  const GCharPtr text(g_strdup_printf(format, args...));
  return text.get();
}

}  // namespace

const char* kindsOf(const MediaFilter& filter, const char* both, const char* images, const char* videos) {
  return filter.images && filter.videos ? both : filter.images ? images : videos;
}

std::string sizeText(std::int64_t bytes) {
  constexpr double step = 1024;
  if (bytes < 1024) return formatted("%d B", static_cast<int>(bytes));
  double amount = static_cast<double>(bytes) / step;
  // What would round up to 1024 of a unit is one of the next.
  if (amount < step - 0.5) return formatted("%.0f KB", amount);
  amount /= step;
  return amount < step - 0.05 ? formatted("%.1f MB", amount) : formatted("%.1f GB", amount / step);
}

std::string durationText(double seconds) {
  const auto whole = seconds > 0 ? std::max(1L, std::lround(seconds)) : 0L;
  const long hours = whole / 3600;
  const long minutes = whole / 60 % 60;
  if (hours > 0) return formatted("%ld:%02ld:%02ld", hours, minutes, whole % 60);
  return formatted("%ld:%02ld", minutes, whole % 60);
}

std::string confirmText(std::size_t count) {
  return count == 0 ? tr("完成") : tr("完成(%1)", {std::to_string(count)});
}

std::string originalText(std::size_t count, std::int64_t bytes) {
  return count == 0 ? tr("原图") : tr("原图 (%1)", {sizeText(bytes)});
}

std::string brokenText(const MediaItem& item) {
  return item.type == MediaType::video ? tr("这个视频无法打开") : tr("这张照片无法打开");
}

std::string accessibleText(const MediaItem& item, std::optional<double> duration, std::size_t number, bool isBroken) {
  auto text = tr(item.type == MediaType::video ? trLater("视频 %1") : trLater("照片 %1"), {displayName(item.path)});
  if (duration) text += tr(", 时长 %1", {durationText(*duration)});
  if (isBroken) return text + tr(", 无法打开");
  return text + (number == 0 ? tr(", 未选择") : tr(", 已选择, 第%1项", {std::to_string(number)}));
}

std::string displayName(std::string_view path) {
  const GCharPtr name(g_filename_display_basename(std::string(path).c_str()));
  return name.get();
}

}  // namespace orivex::gtk

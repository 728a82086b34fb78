#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "MediaItem.h"

namespace orivex::gtk {

/// The word for what is listed.
const char* kindsOf(const MediaFilter& filter, const char* both, const char* images, const char* videos);

/// "512 B", "34 KB", "12.3 MB", "1.2 GB"; 1 KB is 1024 bytes.
std::string sizeText(std::int64_t bytes);

/// "0:07", "12:05", "1:02:03" of a length in seconds; what lasts at all lasts a second.
std::string durationText(double seconds);

/// "完成", "完成(3)".
std::string confirmText(std::size_t count);

/// "原图", "原图 (12.3 MB)" when something is selected.
std::string originalText(std::size_t count, std::int64_t bytes);

/// What a screen reader says of a cell: "照片 IMG_1.jpg, 未选择", "视频 a.mp4, 时长 0:07, 已选择, 第2项".
/// `number` is the place in the selection, from 1; 0 when not selected. A broken one cannot be selected.
std::string accessibleText(const MediaItem& item, std::optional<double> duration, std::size_t number, bool isBroken);

/// Why a broken item cannot be selected.
std::string brokenText(const MediaItem& item);

/// The name of a file or folder for people: what is not UTF-8 in it is replaced.
std::string displayName(std::string_view path);

}  // namespace orivex::gtk

#pragma once

#include <optional>
#include <string_view>

#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {

/// Which kinds of files are listed.
struct MediaFilter {
  bool images = true;
  bool videos = true;
};

/// What a file is by the ending of its name, in any case of letters; nothing for a hidden file and for one that is
/// neither photo nor video. The contents are not looked at: that would read every file of the library.
std::optional<MediaType> mediaTypeOf(std::string_view fileName);

/// The same, with nothing for a kind that `filter` leaves out.
std::optional<MediaType> mediaTypeOf(std::string_view fileName, const MediaFilter& filter);

}  // namespace orivex::gtk

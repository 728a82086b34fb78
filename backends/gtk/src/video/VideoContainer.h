#pragma once

#include <string_view>

namespace orivex::gtk {

/// How many bytes of a file `isVideoContainer` wants to see.
inline constexpr std::size_t videoHeadBytes = 1024;

/// Whether a file that begins with `head` holds a video itself. Playlists and manifests, whatever their names, only
/// tell which addresses to load.
bool isVideoContainer(std::string_view head);

/// The same of the file at `path`; false when it cannot be read.
bool isVideoContainerAt(const char* path);

}  // namespace orivex::gtk

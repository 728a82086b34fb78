#pragma once

#include <string>

namespace orivex::gtk {

/// Whether the file at `path` begins as one that holds a video itself; false when it cannot be read. Playlists and
/// manifests, whatever their names, only name addresses to load.
bool isVideoContainer(const std::string& path);

}  // namespace orivex::gtk

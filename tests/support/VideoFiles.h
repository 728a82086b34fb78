#pragma once

#include <filesystem>
#include <string>

namespace orivex::gtk {

/// Runs a GStreamer pipeline, without its sink, into the file at `path`. Ends the test when it fails.
void writeMedia(const std::filesystem::path& path, const std::string& pipeline);

/// A pipeline for an MP4 of two seconds, 320 x 240 pixels, dark above and light below.
std::string testVideo();

/// The bytes of a file.
std::string contentsOf(const std::filesystem::path& path);

/// Says in the header of the MP4 at `path` that players turn its picture clockwise by `degrees`, a multiple of 90, as
/// phones do.
void turnVideo(const std::filesystem::path& path, int degrees);

}  // namespace orivex::gtk

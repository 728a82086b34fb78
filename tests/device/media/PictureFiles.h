#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "PlainJpeg.h"

namespace orivex::gtk {

/// An Exif block with an orientation and the place where the photo was taken, "SECRET" for short.
JpegMarker exifMarker(int orientation, bool littleEndian = false);

/// An ICC profile of three matrix colours, with a description and a private tag that both say "SECRET".
std::string colorProfileWithSecrets();

/// A file as gdk-pixbuf writes it; nothing when the loader of `format` is missing or cannot write. `alpha` of every
/// pixel; 255 leaves the channel out.
using SaveOptions = std::vector<std::pair<std::string, std::string>>;
std::optional<std::string> savedPicture(const RgbImage& image, const char* format, int alpha = 255,
                                        const SaveOptions& options = {});

/// A moving picture of one pixel: first red, then blue.
std::string movingGif();

/// The same JPEG with another size in its header.
std::string withClaimedSize(std::string jpeg, unsigned width, unsigned height);

/// Whether every sample differs by at most `tolerance`.
bool isNear(const RgbColor& one, const RgbColor& other, int tolerance);

}  // namespace orivex::gtk

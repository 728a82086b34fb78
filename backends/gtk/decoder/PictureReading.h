#pragma once

#include <cstdio>
#include <variant>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GRef.h"

#include "orivex/platform/ports/MediaReading.h"

namespace orivex::gtk {

struct PixelSize {
  int width;
  int height;
};

/// The size in which a picture fits into `most`, never enlarged.
PixelSize fitted(PixelSize picture, PixelSize most);

/// The picture as an upright JPEG, on white where it is transparent. What the file holds is told by its first bytes:
/// JPEGs are encoded anew sample by sample (`recodeJpeg`), other pictures are decoded by the gdk-pixbuf loaders that
/// are installed. Of the original only the colour profile stays. `quality` is from 0 to 1.
std::variant<JpegImage, Failure> recodePicture(std::FILE* file, double quality);

/// The picture upright, decoded at no more than `most` and never enlarged.
std::variant<GRef<GdkPixbuf>, Failure> readPicture(std::FILE* file, PixelSize most);

}  // namespace orivex::gtk

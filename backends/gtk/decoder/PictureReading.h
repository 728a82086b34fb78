#pragma once

#include <cstdio>
#include <variant>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GRef.h"

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/ports/ImageCodec.h"

namespace orivex::gtk {

/// The picture as an upright JPEG. What the file holds is told by its first bytes: JPEGs are encoded anew sample by
/// sample (`JpegRecoder`), other pictures are decoded by the gdk-pixbuf loaders that are installed. Of the original
/// only the colour profile stays.
std::variant<JpegImage, Failure> recodePicture(std::FILE* file, double quality);

/// The picture upright, decoded at no more than `width` by `height` pixels and never enlarged.
std::variant<GRef<GdkPixbuf>, Failure> readPicture(std::FILE* file, int width, int height);

/// The size in which a picture of `width` by `height` pixels fits into `most`.
struct PixelSize {
  int width;
  int height;
};
PixelSize fitted(PixelSize picture, PixelSize most);

}  // namespace orivex::gtk

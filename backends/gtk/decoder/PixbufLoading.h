#pragma once

#include <cstdio>
#include <variant>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GRef.h"

#include "orivex/platform/base/Failure.h"

namespace orivex::gtk {

struct PixelSize {
  int width;
  int height;
};

/// The size in which a picture fits into `most`, never enlarged.
PixelSize fitted(PixelSize picture, PixelSize most);

/// Decodes a picture of any kind for which a gdk-pixbuf loader is installed: its first frame, as it is stored.
std::variant<GRef<GdkPixbuf>, Failure> loadPixbuf(std::FILE* file);

/// The same, fitted into `most`.
std::variant<GRef<GdkPixbuf>, Failure> loadPixbuf(std::FILE* file, PixelSize most);

}  // namespace orivex::gtk

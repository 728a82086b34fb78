#pragma once

#include <variant>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "orivex/platform/ports/ImageCodec.h"

namespace orivex::gtk {

/// Encodes a decoded picture upright, on white where it is transparent, with its colour profile and nothing else that
/// came with it. `quality` is from 0 to 1.
std::variant<JpegImage, Failure> encodePixbuf(GdkPixbuf* pixbuf, double quality);

}  // namespace orivex::gtk

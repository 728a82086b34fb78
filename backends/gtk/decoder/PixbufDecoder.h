#pragma once

#include <cstdio>
#include <variant>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib/GRef.h"

#include "orivex/platform/base/Failure.h"

namespace orivex::gtk {

/// Decodes a picture of any kind for which a gdk-pixbuf loader is installed: its first frame, as it is stored.
std::variant<GRef<GdkPixbuf>, Failure> decodePixbuf(std::FILE* file);

}  // namespace orivex::gtk

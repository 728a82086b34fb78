#pragma once

#include <cairo.h>

namespace orivex::demo {

/// Adds a closed rectangle with round corners to the path.
void roundedRectangle(cairo_t* cairo, double x, double y, double width, double height, double radius);

}  // namespace orivex::demo

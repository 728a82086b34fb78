#pragma once

#include <vector>

#include <gtk/gtk.h>

namespace orivex::demo {

/// The goods that the shop shows.
enum class Picture { headphones, lamp };

/// A widget that shows a picture over its coloured ground, at any size. `radius` rounds its corners, in points.
GtkWidget* pictureNew(Picture picture, double radius);

/// A square picture as a PNG file; `size` in pixels.
std::vector<unsigned char> pngOf(Picture picture, int size);

}  // namespace orivex::demo

#pragma once

#include <gtk/gtk.h>

#include "orivex/platform/base/Geometry.h"

/// The photo library's pictures and icons, as render nodes.
namespace orivex::gtk::drawing {

inline constexpr GdkRGBA bright{1, 1, 1, 1};
inline constexpr GdkRGBA faint{1, 1, 1, 0.45F};

/// Draws the middle of the picture so that it covers the area, or the whole picture so that it fits in.
void cover(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area);
void contain(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area);

/// The size at which `contain` draws the picture.
Size containedSize(GdkTexture* texture, Size area);

/// A symbolic icon of the desktop's theme around `center`, `side` points wide.
void icon(GtkSnapshot* snapshot, GtkWidget* widget, const char* name, graphene_point_t center, float side,
          const GdkRGBA& color);

}  // namespace orivex::gtk::drawing

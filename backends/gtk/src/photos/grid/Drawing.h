#pragma once

#include <string>

#include <gtk/gtk.h>

#include "../../glib/GRef.h"

#include "orivex/platform/base/Geometry.h"

/// The photo library's strokes and colours, as render nodes.
namespace orivex::gtk::drawing {

// The sheet is dark whatever the system's style is: pictures keep their colours best on a neutral dark ground.
inline constexpr GdkRGBA bright{1, 1, 1, 1};
inline constexpr GdkRGBA faint{1, 1, 1, 0.45F};
inline constexpr GdkRGBA placeholder{0.17F, 0.17F, 0.18F, 1};
inline constexpr GdkRGBA selectedVeil{0, 0, 0, 0.35F};
inline constexpr GdkRGBA excludedVeil{0.11F, 0.11F, 0.12F, 0.72F};
inline constexpr GdkRGBA accent{0.204F, 0.471F, 0.965F, 1};  // #3478f6, as in the style sheet

/// Draws the middle of the picture so that it covers the area, or the whole picture so that it fits in.
void cover(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area);
void contain(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area);

/// The size at which `contain` draws the picture.
Size containedSize(GdkTexture* texture, Size area);

/// A shade that grows darker downwards, under bright text at a picture's lower edge.
void shade(GtkSnapshot* snapshot, const graphene_rect_t& area);

/// A ring over any picture; a filled disc when chosen.
void circle(GtkSnapshot* snapshot, const graphene_rect_t& area, bool isChosen);

/// A symbolic icon of the desktop's theme around `center`, `side` points wide.
void icon(GtkSnapshot* snapshot, GtkWidget* widget, const char* name, graphene_point_t center, float side,
          const GdkRGBA& color);

graphene_size_t sizeOf(PangoLayout* text);

/// Writes bright text.
void write(GtkSnapshot* snapshot, PangoLayout* text, graphene_point_t corner);

}  // namespace orivex::gtk::drawing

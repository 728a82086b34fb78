#pragma once

#include <string>

#include <gtk/gtk.h>

#include "../glib/GRef.h"

#include "orivex/platform/base/Geometry.h"

/// The photo library's strokes and colours, as render nodes.
namespace orivex::gtk::drawing {

struct Area {
  float x, y, width, height;
};
struct Spot {
  float x, y;
};
struct Extent {
  float width, height;
};

// The sheet is dark whatever the system's style is: pictures keep their colours best on a neutral dark ground.
inline constexpr GdkRGBA none{0, 0, 0, 0};
inline constexpr GdkRGBA bright{1, 1, 1, 1};
inline constexpr GdkRGBA faint{1, 1, 1, 0.45F};
inline constexpr GdkRGBA placeholder{0.17F, 0.17F, 0.18F, 1};
inline constexpr GdkRGBA selectedVeil{0, 0, 0, 0.35F};
inline constexpr GdkRGBA excludedVeil{0.11F, 0.11F, 0.12F, 0.72F};
inline constexpr GdkRGBA accent{0.204F, 0.471F, 0.965F, 1};  // #3478f6, as in the style sheet

// Sizes of texts in points.
inline constexpr int smallText = 12;
inline constexpr int numberText = 13;

/// Fills an area with one colour; a transparent one draws nothing.
void fill(GtkSnapshot* snapshot, const Area& area, const GdkRGBA& color);

/// Draws the middle of the picture so that it covers the area, or the whole picture so that it fits in.
void cover(GtkSnapshot* snapshot, GdkTexture* texture, const Area& area);
void contain(GtkSnapshot* snapshot, GdkTexture* texture, const Area& area);

/// The size at which `contain` draws the picture.
Size containedSize(GdkTexture* texture, Size area);

/// A shade that grows darker downwards, under bright text at a picture's lower edge.
void shade(GtkSnapshot* snapshot, const Area& area);

/// A ring over any picture; a filled disc when chosen.
void circle(GtkSnapshot* snapshot, const Area& area, bool isChosen);

/// A triangle that points right, its left side's middle at `spot`.
void playMark(GtkSnapshot* snapshot, const Spot& spot, const GdkRGBA& color);

/// A symbolic icon of the desktop's theme around `center`, `side` points wide.
void icon(GtkSnapshot* snapshot, GtkWidget* widget, const char* name, const Spot& center, float side,
          const GdkRGBA& color);

GRef<PangoLayout> text(GtkWidget* widget, const std::string& contents, int points);
Extent sizeOf(PangoLayout* text);
void write(GtkSnapshot* snapshot, PangoLayout* text, const Spot& spot, const GdkRGBA& color);

}  // namespace orivex::gtk::drawing

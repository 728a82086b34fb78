#include "Drawings.h"

#include <memory>
#include <numbers>

#include "GObjects.h"
#include "Shapes.h"

namespace orivex::demo {
namespace {

using PatternPtr = std::unique_ptr<cairo_pattern_t, FreeWith<cairo_pattern_destroy>>;
using SurfacePtr = std::unique_ptr<cairo_surface_t, FreeWith<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, FreeWith<cairo_destroy>>;

struct Colour {
  double red;
  double green;
  double blue;
  double alpha = 1;
};

struct Look {
  Picture picture;
  double radius;
};

constexpr double pi = std::numbers::pi;

void setColour(cairo_t* cairo, const Colour& colour) {
  cairo_set_source_rgba(cairo, colour.red, colour.green, colour.blue, colour.alpha);
}

void setGradient(cairo_t* cairo, double x0, double y0, double x1, double y1, const Colour& from, const Colour& to) {
  const PatternPtr pattern(cairo_pattern_create_linear(x0, y0, x1, y1));
  cairo_pattern_add_color_stop_rgba(pattern.get(), 0, from.red, from.green, from.blue, from.alpha);
  cairo_pattern_add_color_stop_rgba(pattern.get(), 1, to.red, to.green, to.blue, to.alpha);
  cairo_set_source(cairo, pattern.get());
}

void ellipse(cairo_t* cairo, double x, double y, double width, double height, const Colour& colour) {
  cairo_save(cairo);
  cairo_translate(cairo, x, y);
  cairo_scale(cairo, width, height);
  cairo_arc(cairo, 0, 0, 0.5, 0, 2 * pi);
  cairo_restore(cairo);
  setColour(cairo, colour);
  cairo_fill(cairo);
}

// The goods are drawn into a square of 100 by 100 units.

void drawHeadphones(cairo_t* cairo) {
  constexpr Colour deep{0.27, 0.36, 0.55};
  constexpr Colour light{0.55, 0.66, 0.86};
  constexpr Colour cushion{0.16, 0.20, 0.32};
  ellipse(cairo, 50, 87, 66, 7, {0.16, 0.20, 0.36, 0.16});
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_width(cairo, 7);
  setGradient(cairo, 22, 20, 78, 60, light, deep);
  cairo_arc(cairo, 50, 48, 30, pi * 0.97, pi * 2.03);
  cairo_stroke(cairo);
  cairo_set_line_width(cairo, 2);
  setColour(cairo, {1, 1, 1, 0.45});
  cairo_arc(cairo, 50, 48, 31.5, pi * 1.15, pi * 1.55);
  cairo_stroke(cairo);
  for (const bool isLeft : {true, false}) {
    setColour(cairo, cushion);
    roundedRectangle(cairo, isLeft ? 27 : 64, 47, 9, 32, 4.5);
    cairo_fill(cairo);
    setGradient(cairo, 0, 44, 0, 82, light, deep);
    roundedRectangle(cairo, isLeft ? 13 : 69, 44, 18, 38, 8.5);
    cairo_fill(cairo);
    setColour(cairo, {1, 1, 1, 0.35});
    roundedRectangle(cairo, isLeft ? 16.5 : 72.5, 49, 3, 18, 1.5);
    cairo_fill(cairo);
  }
}

void drawLamp(cairo_t* cairo) {
  constexpr Colour brass{0.72, 0.53, 0.30};
  constexpr Colour dark{0.45, 0.31, 0.18};
  cairo_move_to(cairo, 32, 42);
  cairo_line_to(cairo, 12, 86);
  cairo_line_to(cairo, 72, 86);
  cairo_line_to(cairo, 54, 42);
  cairo_close_path(cairo);
  setGradient(cairo, 0, 42, 0, 86, {1, 0.87, 0.45, 0.75}, {1, 0.93, 0.65, 0.05});
  cairo_fill(cairo);
  ellipse(cairo, 66, 88, 40, 6, {0.35, 0.22, 0.08, 0.16});
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_width(cairo, 4.5);
  setGradient(cairo, 40, 20, 76, 84, brass, dark);
  cairo_move_to(cairo, 66, 84);
  cairo_line_to(cairo, 76, 48);
  cairo_line_to(cairo, 46, 24);
  cairo_stroke(cairo);
  ellipse(cairo, 76, 48, 8, 8, dark);
  setGradient(cairo, 52, 80, 80, 88, brass, dark);
  roundedRectangle(cairo, 51, 81, 30, 7, 3.5);
  cairo_fill(cairo);
  cairo_move_to(cairo, 37, 18);
  cairo_curve_to(cairo, 41, 14, 48, 15, 50, 20);
  cairo_line_to(cairo, 60, 40);
  cairo_line_to(cairo, 26, 44);
  cairo_close_path(cairo);
  setGradient(cairo, 28, 16, 58, 44, {0.98, 0.62, 0.36}, {0.86, 0.38, 0.22});
  cairo_fill(cairo);
  ellipse(cairo, 43, 42.4, 15, 5, {1, 0.95, 0.72});
}

void drawGround(cairo_t* cairo, Picture picture, double width, double height) {
  if (picture == Picture::headphones) {
    setGradient(cairo, 0, 0, width, height, {0.93, 0.95, 1}, {0.78, 0.83, 0.97});
  } else {
    setGradient(cairo, 0, 0, width, height, {1, 0.96, 0.90}, {0.99, 0.88, 0.76});
  }
  cairo_paint(cairo);
}

void drawPicture(cairo_t* cairo, Picture picture, double width, double height) {
  drawGround(cairo, picture, width, height);
  const double size = std::min(width, height);
  cairo_translate(cairo, (width - size) / 2, (height - size) / 2);
  cairo_scale(cairo, size / 100, size / 100);
  if (picture == Picture::headphones) {
    drawHeadphones(cairo);
  } else {
    drawLamp(cairo);
  }
}

void drawArea(GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer data) noexcept {
  const auto* look = static_cast<const Look*>(data);
  roundedRectangle(cairo, 0, 0, width, height, look->radius);
  cairo_clip(cairo);
  drawPicture(cairo, look->picture, width, height);
}

}  // namespace

GtkWidget* pictureNew(Picture picture, double radius) {
  auto* const area = gtk_drawing_area_new();
  auto look = std::make_unique<Look>(Look{picture, radius});
  gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area), drawArea, look.release(),
                                 [](gpointer data) { std::unique_ptr<Look>(static_cast<Look*>(data)); });
  return area;
}

std::vector<unsigned char> pngOf(Picture picture, int size) {
  const SurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size, size));
  const CairoPtr cairo(cairo_create(surface.get()));
  drawPicture(cairo.get(), picture, size, size);
  std::vector<unsigned char> file;
  const auto append = [](void* target, const unsigned char* data, unsigned length) {
    auto& bytes = *static_cast<std::vector<unsigned char>*>(target);
    bytes.insert(bytes.end(), data, data + length);
    return CAIRO_STATUS_SUCCESS;
  };
  cairo_surface_write_to_png_stream(surface.get(), append, &file);
  return file;
}

}  // namespace orivex::demo

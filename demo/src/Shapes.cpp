#include "Shapes.h"

#include <numbers>

namespace orivex::demo {

void roundedRectangle(cairo_t* cairo, double x, double y, double width, double height, double radius) {
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_sub_path(cairo);
  cairo_arc(cairo, x + width - radius, y + radius, radius, -quarter, 0);
  cairo_arc(cairo, x + width - radius, y + height - radius, radius, 0, quarter);
  cairo_arc(cairo, x + radius, y + height - radius, radius, quarter, 2 * quarter);
  cairo_arc(cairo, x + radius, y + radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(cairo);
}

}  // namespace orivex::demo

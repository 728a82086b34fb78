#include "PhoneFrame.h"

#include "GObjects.h"
#include "Shapes.h"

namespace orivex::demo {
namespace {

using DateTimePtr = std::unique_ptr<GDateTime, FreeWith<g_date_time_unref>>;
using LayoutPtr = std::unique_ptr<PangoLayout, FreeWith<g_object_unref>>;
using FontPtr = std::unique_ptr<PangoFontDescription, FreeWith<pango_font_description_free>>;

// A status bar at least this high makes room for a notch; lengths in points.
constexpr int leastHeightWithNotch = 40;
constexpr double notchWidth = 116;
constexpr double notchHeight = 27;
constexpr double sideMargin = 26;

void drawTime(GtkWidget* area, cairo_t* cairo, double middle) {
  const DateTimePtr now(g_date_time_new_now_local());
  const CharPtr time(g_date_time_format(now.get(), "%H:%M"));
  const LayoutPtr layout(gtk_widget_create_pango_layout(area, time.get()));
  const FontPtr font(
      pango_font_description_copy(pango_context_get_font_description(pango_layout_get_context(layout.get()))));
  pango_font_description_set_weight(font.get(), PANGO_WEIGHT_BOLD);
  pango_font_description_set_absolute_size(font.get(), 15 * PANGO_SCALE);
  pango_layout_set_font_description(layout.get(), font.get());
  int height = 0;
  pango_layout_get_pixel_size(layout.get(), nullptr, &height);
  cairo_move_to(cairo, sideMargin, middle - height / 2.0);
  pango_cairo_show_layout(cairo, layout.get());
}

void drawSignal(cairo_t* cairo, double right, double middle) {
  for (int bar = 0; bar < 4; ++bar) {
    const double height = 4 + 2.4 * bar;
    roundedRectangle(cairo, right - 18 + 4.8 * bar, middle + 5.5 - height, 3.2, height, 1);
    cairo_fill(cairo);
  }
}

void drawBattery(cairo_t* cairo, double right, double middle) {
  cairo_set_line_width(cairo, 1);
  roundedRectangle(cairo, right - 25, middle - 5.5, 22, 11, 3);
  cairo_stroke(cairo);
  roundedRectangle(cairo, right - 23, middle - 3.5, 16, 7, 1.5);
  cairo_fill(cairo);
  roundedRectangle(cairo, right - 1.7, middle - 2, 1.7, 4, 0.8);
  cairo_fill(cairo);
}

void drawStatusBar(GtkDrawingArea* area, cairo_t* cairo, int width, int height, gpointer) noexcept {
  const double middle = height / 2.0;
  cairo_set_source_rgb(cairo, 0.08, 0.08, 0.1);
  if (height >= leastHeightWithNotch) {
    roundedRectangle(cairo, (width - notchWidth) / 2, middle - notchHeight / 2, notchWidth, notchHeight,
                     notchHeight / 2);
    cairo_fill(cairo);
  }
  drawTime(GTK_WIDGET(area), cairo, middle);
  drawBattery(cairo, width - sideMargin, middle);
  drawSignal(cairo, width - sideMargin - 32, middle);
}

void drawHomeIndicator(GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer) noexcept {
  constexpr double barWidth = 128;
  constexpr double barHeight = 5;
  cairo_set_source_rgb(cairo, 0.08, 0.08, 0.1);
  roundedRectangle(cairo, (width - barWidth) / 2, height - 8 - barHeight, barWidth, barHeight, barHeight / 2);
  cairo_fill(cairo);
}

GtkWidget* areaNew(GtkDrawingAreaDrawFunc draw, GtkAlign edge) {
  auto* const area = gtk_drawing_area_new();
  gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area), draw, nullptr, nullptr);
  gtk_widget_set_can_target(area, FALSE);
  gtk_widget_set_valign(area, edge);
  return area;
}

void setHeight(GtkWidget* area, double height) {
  gtk_widget_set_size_request(area, -1, static_cast<int>(height));
  gtk_widget_set_visible(area, height > 0);
}

}  // namespace

PhoneFrame::PhoneFrame(GtkWidget* content)
    : overlay_(gtk_overlay_new()),
      statusBar_(areaNew(drawStatusBar, GTK_ALIGN_START)),
      homeIndicator_(areaNew(drawHomeIndicator, GTK_ALIGN_END)) {
  gtk_overlay_set_child(GTK_OVERLAY(overlay_), content);
  gtk_overlay_add_overlay(GTK_OVERLAY(overlay_), statusBar_);
  gtk_overlay_add_overlay(GTK_OVERLAY(overlay_), homeIndicator_);
}

void PhoneFrame::apply(const Settings& settings) {
  setHeight(statusBar_, settings.statusBarHeight);
  setHeight(homeIndicator_, settings.bottomInset);
}

}  // namespace orivex::demo

#include "Drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace orivex::gtk::drawing {
namespace {

graphene_rect_t rect(const Area& area) {
  return {{area.x, area.y}, {area.width, area.height}};
}

// The texture at `scale` around the middle of the area.
graphene_rect_t placed(GdkTexture* texture, const Area& area, float scale) {
  const float width = static_cast<float>(gdk_texture_get_width(texture)) * scale;
  const float height = static_cast<float>(gdk_texture_get_height(texture)) * scale;
  return {{area.x + (area.width - width) / 2, area.y + (area.height - height) / 2}, {width, height}};
}

std::pair<float, float> scales(GdkTexture* texture, const Area& area) {
  return {area.width / static_cast<float>(gdk_texture_get_width(texture)),
          area.height / static_cast<float>(gdk_texture_get_height(texture))};
}

}  // namespace

void fill(GtkSnapshot* snapshot, const Area& area, const GdkRGBA& color) {
  const auto bounds = rect(area);
  if (color.alpha > 0) gtk_snapshot_append_color(snapshot, &color, &bounds);
}

void cover(GtkSnapshot* snapshot, GdkTexture* texture, const Area& area) {
  const auto [across, down] = scales(texture, area);
  const auto bounds = rect(area);
  const auto picture = placed(texture, area, std::max(across, down));
  gtk_snapshot_push_clip(snapshot, &bounds);
  gtk_snapshot_append_texture(snapshot, texture, &picture);
  gtk_snapshot_pop(snapshot);
}

void contain(GtkSnapshot* snapshot, GdkTexture* texture, const Area& area) {
  const auto [across, down] = scales(texture, area);
  const auto picture = placed(texture, area, std::min(across, down));
  gtk_snapshot_append_texture(snapshot, texture, &picture);
}

Size containedSize(GdkTexture* texture, Size area) {
  const double width = gdk_texture_get_width(texture);
  const double height = gdk_texture_get_height(texture);
  const double scale = std::min(area.width / width, area.height / height);
  return {width * scale, height * scale};
}

void shade(GtkSnapshot* snapshot, const Area& area) {
  const auto bounds = rect(area);
  const graphene_point_t top{area.x, area.y};
  const graphene_point_t bottom{area.x, area.y + area.height};
  constexpr std::array<GskColorStop, 2> stops{{{0, {0, 0, 0, 0}}, {1, {0, 0, 0, 0.6F}}}};
  gtk_snapshot_append_linear_gradient(snapshot, &bounds, &top, &bottom, stops.data(), stops.size());
}

void circle(GtkSnapshot* snapshot, const Area& area, bool isChosen) {
  constexpr GdkRGBA dim{0, 0, 0, 0.28F};
  const auto bounds = rect(area);
  GskRoundedRect disc;
  gsk_rounded_rect_init_from_rect(&disc, &bounds, area.width / 2);
  gtk_snapshot_push_rounded_clip(snapshot, &disc);
  gtk_snapshot_append_color(snapshot, isChosen ? &accent : &dim, &bounds);
  gtk_snapshot_pop(snapshot);
  constexpr float line = 1.5F;
  constexpr std::array<float, 4> widths{line, line, line, line};
  constexpr std::array<GdkRGBA, 4> colors{bright, bright, bright, bright};
  gtk_snapshot_append_border(snapshot, &disc, widths.data(), colors.data());
}

void playMark(GtkSnapshot* snapshot, const Spot& spot, const GdkRGBA& color) {
  constexpr float width = 8;
  constexpr float height = 10;
  const graphene_rect_t bounds{{spot.x, spot.y - height / 2}, {width, height}};
  cairo_t* const context = gtk_snapshot_append_cairo(snapshot, &bounds);
  gdk_cairo_set_source_rgba(context, &color);
  cairo_move_to(context, bounds.origin.x, bounds.origin.y);
  cairo_rel_line_to(context, width, height / 2);
  cairo_rel_line_to(context, -width, height / 2);
  cairo_fill(context);
  cairo_destroy(context);
}

void icon(GtkSnapshot* snapshot, GtkWidget* widget, const char* name, const Spot& center, float side,
          const GdkRGBA& color) {
  auto* const theme = gtk_icon_theme_get_for_display(gtk_widget_get_display(widget));
  const auto paintable = GRef<GtkIconPaintable>::adopt(gtk_icon_theme_lookup_icon(
      theme, name, nullptr, static_cast<int>(std::lround(side)), gtk_widget_get_scale_factor(widget), GTK_TEXT_DIR_NONE,
      static_cast<GtkIconLookupFlags>(0)));
  const graphene_point_t corner{center.x - side / 2, center.y - side / 2};
  gtk_snapshot_save(snapshot);
  gtk_snapshot_translate(snapshot, &corner);
  gtk_symbolic_paintable_snapshot_symbolic(GTK_SYMBOLIC_PAINTABLE(paintable.get()), snapshot, static_cast<double>(side),
                                           static_cast<double>(side), &color, 1);
  gtk_snapshot_restore(snapshot);
}

GRef<PangoLayout> text(GtkWidget* widget, const std::string& contents, int points) {
  auto layout = GRef<PangoLayout>::adopt(gtk_widget_create_pango_layout(widget, contents.c_str()));
  auto* const font =
      pango_font_description_copy(pango_context_get_font_description(pango_layout_get_context(layout.get())));
  // Not absolute: it grows with the text size that the visitor has chosen.
  constexpr double pointsPerPixel = 0.75;
  pango_font_description_set_size(font, static_cast<int>(points * pointsPerPixel * PANGO_SCALE));
  pango_font_description_set_weight(font, PANGO_WEIGHT_MEDIUM);
  pango_layout_set_font_description(layout.get(), font);
  pango_font_description_free(font);
  return layout;
}

Extent sizeOf(PangoLayout* text) {
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(text, &width, &height);
  return {static_cast<float>(width), static_cast<float>(height)};
}

void write(GtkSnapshot* snapshot, PangoLayout* text, const Spot& spot, const GdkRGBA& color) {
  const graphene_point_t corner{spot.x, spot.y};
  gtk_snapshot_save(snapshot);
  gtk_snapshot_translate(snapshot, &corner);
  gtk_snapshot_append_layout(snapshot, text, &color);
  gtk_snapshot_restore(snapshot);
}

}  // namespace orivex::gtk::drawing

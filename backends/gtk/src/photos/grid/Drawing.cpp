#include "Drawing.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orivex::gtk::drawing {
namespace {

graphene_size_t sizeOf(GdkTexture* texture) {
  return {static_cast<float>(gdk_texture_get_width(texture)), static_cast<float>(gdk_texture_get_height(texture))};
}

// Appends the texture at `scale` around the middle of the area.
void append(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area, float scale) {
  const auto size = sizeOf(texture);
  const graphene_rect_t place{{area.origin.x + (area.size.width - size.width * scale) / 2,
                               area.origin.y + (area.size.height - size.height * scale) / 2},
                              {size.width * scale, size.height * scale}};
  gtk_snapshot_append_texture(snapshot, texture, &place);
}

}  // namespace

void cover(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area) {
  const auto size = sizeOf(texture);
  gtk_snapshot_push_clip(snapshot, &area);
  append(snapshot, texture, area, std::max(area.size.width / size.width, area.size.height / size.height));
  gtk_snapshot_pop(snapshot);
}

void contain(GtkSnapshot* snapshot, GdkTexture* texture, const graphene_rect_t& area) {
  const auto size = sizeOf(texture);
  append(snapshot, texture, area, std::min(area.size.width / size.width, area.size.height / size.height));
}

Size containedSize(GdkTexture* texture, Size area) {
  const double width = gdk_texture_get_width(texture);
  const double height = gdk_texture_get_height(texture);
  const double scale = std::min(area.width / width, area.height / height);
  return {width * scale, height * scale};
}

void shade(GtkSnapshot* snapshot, const graphene_rect_t& area) {
  const graphene_point_t bottom{area.origin.x, area.origin.y + area.size.height};
  constexpr std::array<GskColorStop, 2> stops{{{0, {0, 0, 0, 0}}, {1, {0, 0, 0, 0.6F}}}};
  gtk_snapshot_append_linear_gradient(snapshot, &area, &area.origin, &bottom, stops.data(), stops.size());
}

void circle(GtkSnapshot* snapshot, const graphene_rect_t& area, bool isChosen) {
  constexpr GdkRGBA dim{0, 0, 0, 0.28F};
  GskRoundedRect disc;
  gsk_rounded_rect_init_from_rect(&disc, &area, area.size.width / 2);
  gtk_snapshot_push_rounded_clip(snapshot, &disc);
  gtk_snapshot_append_color(snapshot, isChosen ? &accent : &dim, &area);
  gtk_snapshot_pop(snapshot);
  constexpr float line = 1.5F;
  constexpr std::array<float, 4> widths{line, line, line, line};
  constexpr std::array<GdkRGBA, 4> colors{bright, bright, bright, bright};
  gtk_snapshot_append_border(snapshot, &disc, widths.data(), colors.data());
}

void icon(GtkSnapshot* snapshot, GtkWidget* widget, const char* name, graphene_point_t center, float side,
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

graphene_size_t sizeOf(PangoLayout* text) {
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(text, &width, &height);
  return {static_cast<float>(width), static_cast<float>(height)};
}

void write(GtkSnapshot* snapshot, PangoLayout* text, graphene_point_t corner) {
  gtk_snapshot_save(snapshot);
  gtk_snapshot_translate(snapshot, &corner);
  gtk_snapshot_append_layout(snapshot, text, &bright);
  gtk_snapshot_restore(snapshot);
}

}  // namespace orivex::gtk::drawing

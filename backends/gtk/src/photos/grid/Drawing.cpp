#include "Drawing.h"

#include <algorithm>
#include <cmath>

#include "../../glib/GRef.h"

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

}  // namespace orivex::gtk::drawing

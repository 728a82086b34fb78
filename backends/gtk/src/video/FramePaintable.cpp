#include "video/FramePaintable.h"

#include <cmath>

#include "video/PreviewBranch.h"

namespace orivex::gtk {
namespace {

// The GObject behind the class: what GTK draws.
struct FrameObject {
  GObject parent;
  GdkTexture* texture;
};

struct FrameObjectClass {
  GObjectClass parent;
};

GObjectClass* parentClass = nullptr;

FrameObject* frameOf(gpointer object) {
  return static_cast<FrameObject*>(object);
}

graphene_rect_t rectangle(double x, double y, double width, double height) {
  graphene_rect_t made;
  graphene_rect_init(&made, static_cast<float>(x), static_cast<float>(y), static_cast<float>(width),
                     static_cast<float>(height));
  return made;
}

// Where a frame is drawn in an area of this size, in the area's points.
graphene_rect_t placed(GdkTexture* texture, double width, double height) {
  const auto [shownWidth, shownHeight] = placedSize(
      {static_cast<double>(gdk_texture_get_width(texture)), static_cast<double>(gdk_texture_get_height(texture))},
      {width, height});
  // On whole pixels, where a frame that has the right size already need not be computed anew.
  return rectangle(std::floor((width - shownWidth) / 2), std::floor((height - shownHeight) / 2), shownWidth,
                   shownHeight);
}

void snapshot(GdkPaintable* paintable, GdkSnapshot* target, double width, double height) {
  const auto* const frame = frameOf(paintable);
  if (!frame->texture) return;
  auto* const gtkSnapshot = GTK_SNAPSHOT(target);
  const auto area = rectangle(0, 0, width, height);
  gtk_snapshot_push_clip(gtkSnapshot, &area);
  const auto bounds = placed(frame->texture, width, height);
  gtk_snapshot_append_texture(gtkSnapshot, frame->texture, &bounds);
  gtk_snapshot_pop(gtkSnapshot);
}

GType frameType() {
  static const GType type = [] {
    const GTypeInfo info{sizeof(FrameObjectClass),
                         nullptr,
                         nullptr,
                         [](gpointer objectClass, gpointer) {
                           parentClass = static_cast<GObjectClass*>(g_type_class_peek_parent(objectClass));
                           G_OBJECT_CLASS(objectClass)->finalize = [](GObject* object) {
                             g_clear_object(&frameOf(object)->texture);
                             parentClass->finalize(object);
                           };
                         },
                         nullptr,
                         nullptr,
                         sizeof(FrameObject),
                         0,
                         nullptr,
                         nullptr};
    const GInterfaceInfo paintable{
        [](gpointer interface, gpointer) { static_cast<GdkPaintableInterface*>(interface)->snapshot = snapshot; },
        nullptr, nullptr};
    const GType made = g_type_register_static(G_TYPE_OBJECT, "OrivexFramePaintable", &info, G_TYPE_FLAG_FINAL);
    g_type_add_interface_static(made, GDK_TYPE_PAINTABLE, &paintable);
    return made;
  }();
  return type;
}

}  // namespace

FramePaintable::FramePaintable()
    : paintable_(GRef<GdkPaintable>::adopt(GDK_PAINTABLE(g_object_new(frameType(), nullptr)))) {}

void FramePaintable::show(GdkTexture* frame) {
  g_set_object(&frameOf(paintable_.get())->texture, frame);
  gdk_paintable_invalidate_contents(paintable_.get());
}

}  // namespace orivex::gtk

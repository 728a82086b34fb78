#include "Canvas.h"

#include "../Contained.h"

namespace {

using orivex::gtk::CanvasDelegate;
using orivex::gtk::contained;

struct OrivexCanvas {
  GtkWidget parent;
  CanvasDelegate* delegate;
};

struct OrivexCanvasClass {
  GtkWidgetClass parent;
};

GType canvasType();

OrivexCanvas* canvas(GtkWidget* widget) {
  return reinterpret_cast<OrivexCanvas*>(
      g_type_check_instance_cast(&widget->parent_instance.g_type_instance, canvasType()));
}

GtkSizeRequestMode requestMode(GtkWidget* /*widget*/) {
  return GTK_SIZE_REQUEST_HEIGHT_FOR_WIDTH;
}

void measure(GtkWidget* widget, GtkOrientation orientation, int forSize, int* minimum, int* natural,
             int* minimumBaseline, int* naturalBaseline) noexcept {
  auto* const delegate = canvas(widget)->delegate;
  *minimum = *natural = contained([&] { return delegate ? delegate->minimumSize(orientation, forSize) : 0; });
  *minimumBaseline = *naturalBaseline = -1;
}

void sizeAllocate(GtkWidget* widget, int width, int height, int /*baseline*/) noexcept {
  contained([&] {
    if (auto* const delegate = canvas(widget)->delegate) delegate->allocate(width, height);
  });
}

void snapshotCanvas(GtkWidget* widget, GtkSnapshot* snapshot) noexcept {
  contained([&] {
    if (auto* const delegate = canvas(widget)->delegate) delegate->snapshot(snapshot);
  });
}

void dispose(GObject* object) {
  auto* const widget = reinterpret_cast<GtkWidget*>(object);
  canvas(widget)->delegate = nullptr;
  while (GtkWidget* child = gtk_widget_get_first_child(widget)) gtk_widget_unparent(child);
  G_OBJECT_CLASS(g_type_class_peek_parent(g_type_class_peek(canvasType())))->dispose(object);
}

void classInit(gpointer classPointer, gpointer /*data*/) {
  auto* const widgetClass = static_cast<GtkWidgetClass*>(classPointer);
  widgetClass->get_request_mode = requestMode;
  widgetClass->measure = measure;
  widgetClass->size_allocate = sizeAllocate;
  widgetClass->snapshot = snapshotCanvas;
  static_cast<GObjectClass*>(classPointer)->dispose = dispose;
}

GType canvasType() {
  static const GType type =
      g_type_register_static_simple(GTK_TYPE_WIDGET, "OrivexCanvas", sizeof(OrivexCanvasClass), classInit,
                                    sizeof(OrivexCanvas), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace

namespace orivex::gtk {

GtkWidget* canvasNew(CanvasDelegate& delegate) {
  auto* const widget = static_cast<GtkWidget*>(g_object_new(canvasType(), nullptr));
  canvas(widget)->delegate = &delegate;
  return widget;
}

GtkWidget* canvasNew(std::unique_ptr<CanvasDelegate> delegate) {
  GtkWidget* const widget = canvasNew(*delegate);
  const auto free = [](gpointer owned) { delete static_cast<CanvasDelegate*>(owned); };
  g_object_set_data_full(G_OBJECT(widget), "delegate", delegate.release(), free);
  return widget;
}

bool isCanvas(GtkWidget* widget) {
  return G_TYPE_CHECK_INSTANCE_TYPE(widget, canvasType()) != FALSE;
}

CanvasDelegate* canvasDelegate(GtkWidget* widget) {
  return widget && isCanvas(widget) ? canvas(widget)->delegate : nullptr;
}

void canvasForget(GtkWidget* widget) {
  canvas(widget)->delegate = nullptr;
}

void canvasSnapshotChildren(GtkWidget* widget, GtkSnapshot* snapshot) {
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child)) {
    gtk_widget_snapshot_child(widget, child, snapshot);
  }
}

}  // namespace orivex::gtk

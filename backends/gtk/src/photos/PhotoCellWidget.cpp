#include <memory>
#include <utility>

#include "PhotoCell.h"

namespace {

using orivex::gtk::PhotoCell;

// Points that a cell would like: three fit into a phone's width, more into a wider sheet.
constexpr int naturalSide = 120;

struct OrivexPhotoCell {
  GtkWidget parent;
  PhotoCell* cell;
};

struct OrivexPhotoCellClass {
  GtkWidgetClass parent;
};

PhotoCell* cellOf(GtkWidget* widget) {
  return reinterpret_cast<OrivexPhotoCell*>(widget)->cell;
}

GtkSizeRequestMode requestMode(GtkWidget* /*widget*/) {
  return GTK_SIZE_REQUEST_HEIGHT_FOR_WIDTH;
}

void measure(GtkWidget* /*widget*/, GtkOrientation orientation, int forSize, int* minimum, int* natural,
             int* minimumBaseline, int* naturalBaseline) {
  const bool isSquare = orientation == GTK_ORIENTATION_VERTICAL && forSize >= 0;
  *minimum = isSquare ? forSize : 1;
  *natural = isSquare ? forSize : naturalSide;
  *minimumBaseline = *naturalBaseline = -1;
}

void snapshotCell(GtkWidget* widget, GtkSnapshot* snapshot) {
  cellOf(widget)->snapshot(snapshot);
}

void finalize(GObject* object) {
  const std::unique_ptr<PhotoCell> cell(reinterpret_cast<OrivexPhotoCell*>(object)->cell);
  static_cast<GObjectClass*>(g_type_class_peek(GTK_TYPE_WIDGET))->finalize(object);
}

void instanceInit(GTypeInstance* instance, gpointer /*classPointer*/) {
  auto* const widget = reinterpret_cast<GtkWidget*>(instance);
  reinterpret_cast<OrivexPhotoCell*>(instance)->cell = std::make_unique<PhotoCell>(widget).release();
}

void classInit(gpointer classPointer, gpointer /*data*/) {
  auto* const widgetClass = static_cast<GtkWidgetClass*>(classPointer);
  widgetClass->get_request_mode = requestMode;
  widgetClass->measure = measure;
  widgetClass->snapshot = snapshotCell;
  static_cast<GObjectClass*>(classPointer)->finalize = finalize;
}

GType cellType() {
  static const GType type =
      g_type_register_static_simple(GTK_TYPE_WIDGET, "OrivexPhotoCell", sizeof(OrivexPhotoCellClass), classInit,
                                    sizeof(OrivexPhotoCell), instanceInit, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace

namespace orivex::gtk {

GtkWidget* PhotoCell::make(std::shared_ptr<Roster> roster) {
  auto* const widget = static_cast<GtkWidget*>(g_object_new(cellType(), nullptr));
  auto* const cell = cellOf(widget);
  roster->insert(cell);
  cell->roster_ = std::move(roster);
  return widget;
}

PhotoCell* PhotoCell::of(GtkWidget* widget) {
  return widget && G_TYPE_CHECK_INSTANCE_TYPE(widget, cellType()) ? cellOf(widget) : nullptr;
}

}  // namespace orivex::gtk

#pragma once

#include <gtk/gtk.h>

namespace orivex::gtk {

/// What a canvas asks of its owner when GTK measures, places and draws it.
class CanvasDelegate {
 public:
  CanvasDelegate() = default;
  CanvasDelegate(const CanvasDelegate&) = delete;
  CanvasDelegate& operator=(const CanvasDelegate&) = delete;
  virtual ~CanvasDelegate() = default;

  /// Smallest width or height in points.
  virtual int minimumSize(GtkOrientation orientation) = 0;
  virtual void allocate(int width, int height) = 0;
  /// Draws the canvas itself, and its children by `canvasSnapshotChildren`.
  virtual void snapshot(GtkSnapshot* snapshot) = 0;
};

/// A fresh floating widget that has children but no opinion of its own about where they stand.
GtkWidget* canvasNew(CanvasDelegate& delegate);

bool isCanvas(GtkWidget* widget);

/// Ends the tie to the delegate: the canvas is then empty and inert.
void canvasForget(GtkWidget* canvas);

void canvasSnapshotChildren(GtkWidget* canvas, GtkSnapshot* snapshot);

}  // namespace orivex::gtk

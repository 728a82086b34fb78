#pragma once

#include <memory>

#include <gtk/gtk.h>

namespace orivex::gtk {

/// What a canvas asks of its owner when GTK measures, places and draws it.
class CanvasDelegate {
 public:
  CanvasDelegate() = default;
  CanvasDelegate(const CanvasDelegate&) = delete;
  CanvasDelegate& operator=(const CanvasDelegate&) = delete;
  virtual ~CanvasDelegate() = default;

  /// Width or height in points, at least; `forSize` is the other one, or -1.
  virtual int minimumSize(GtkOrientation orientation, int forSize) = 0;
  virtual void allocate(int width, int height) = 0;
  /// Draws the canvas itself, and its children by `canvasSnapshotChildren`.
  virtual void snapshot(GtkSnapshot* snapshot) = 0;
};

/// A fresh floating widget that has children but no opinion of its own about where they stand.
GtkWidget* canvasNew(CanvasDelegate& delegate);

/// The same, for a canvas that owns its delegate.
GtkWidget* canvasNew(std::unique_ptr<CanvasDelegate> delegate);

bool isCanvas(GtkWidget* widget);

/// Null when it is no canvas, or one whose tie to its delegate has ended.
CanvasDelegate* canvasDelegate(GtkWidget* widget);

/// Ends the tie to the delegate: the canvas is then empty and inert.
void canvasForget(GtkWidget* canvas);

void canvasSnapshotChildren(GtkWidget* canvas, GtkSnapshot* snapshot);

}  // namespace orivex::gtk

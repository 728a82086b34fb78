#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "../../glib/SignalConnection.h"

#include "orivex/platform/ui/ScreenEdgePanGesture.h"

namespace orivex::gtk {

/// Recognises a drag from the left edge of a widget, by touch or mouse, and reports it to a gesture of the view model.
class EdgePanSource {
 public:
  EdgePanSource(GtkWidget* widget, std::shared_ptr<ScreenEdgePanGesture> gesture);
  EdgePanSource(const EdgePanSource&) = delete;
  EdgePanSource& operator=(const EdgePanSource&) = delete;
  ~EdgePanSource();

 private:
  void update(double x, double y);
  void end(ScreenEdgePanGesture::State state, double translation);
  void report(ScreenEdgePanGesture::State state, double translation);

  GtkWidget* const widget_;
  GtkGesture* const drag_;  // owned by the widget
  std::shared_ptr<ScreenEdgePanGesture> gesture_;
  bool panning_ = false;
  double translation_ = 0;
  SignalConnections connections_;
};

}  // namespace orivex::gtk

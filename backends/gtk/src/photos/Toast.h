#pragma once

#include <memory>
#include <string>

#include <gtk/gtk.h>

#include "../glib/GRef.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// A short word over the sheet that goes by itself. It takes no input, and screen readers speak it. Main thread.
class Toast {
 public:
  explicit Toast(MainQueue& queue);

  GtkWidget* widget() const { return label_.get(); }

  /// Shows `text` for a moment; a later word replaces an earlier one.
  void show(const std::string& text);

 private:
  void hide();

  MainQueue& queue_;
  GRef<GtkWidget> label_;
  std::unique_ptr<Timer> end_;
};

}  // namespace orivex::gtk

#pragma once

#include <gtk/gtk.h>

#include "settings/Settings.h"

namespace orivex::demo {

/// Draws over a window what a phone draws over an application: status bar, notch and home indicator. It takes no input.
class PhoneFrame {
 public:
  /// `content` is shown below the frame.
  explicit PhoneFrame(GtkWidget* content);

  GtkWidget* widget() const { return overlay_; }

  /// As high as the settings say; what is 0 high does not show.
  void apply(const Settings& settings);

 private:
  GtkWidget* overlay_;
  GtkWidget* notch_;
  GtkWidget* statusBar_;
  GtkWidget* homeIndicator_;
};

}  // namespace orivex::demo

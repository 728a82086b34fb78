#pragma once

#include <memory>
#include <string>
#include <vector>

#include "device/Widgets.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// An attached and focused window of 360 by 720 points at the display's corner that holds a text entry, and the
/// visitor's hands: real input through the display server.
class VisitorWindow {
 public:
  VisitorWindow();
  VisitorWindow(const VisitorWindow&) = delete;
  VisitorWindow& operator=(const VisitorWindow&) = delete;
  ~VisitorWindow() { destroy(); }

  GtkWindow* window() const { return window_; }
  GtkOverlay* overlay() const;
  /// Of what the window shows; outlives the window.
  const std::shared_ptr<View>& view() const { return view_; }
  GtkWidget* entry() const { return entry_; }
  GtkWidget* focus() const { return gtk_window_get_focus(window_); }

  void destroy();

  /// Presses keys by their names, such as "shift+Tab", one after the other.
  static void press(const std::vector<std::string>& keys);
  static void click(double x, double y);
  /// Clicks the middle of a widget of this window.
  void click(GtkWidget* widget) const;

 private:
  GtkWindow* window_ = nullptr;
  GtkWidget* entry_ = nullptr;
  std::shared_ptr<View> view_;
};

}  // namespace orivex::gtk

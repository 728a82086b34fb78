#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "MainLoop.h"
#include "Widgets.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// Whether the tests run on the device with a touch screen.
bool hasTouch();

/// Real input through the display server: a verb of script/hands and its arguments. The main loop runs meanwhile: the
/// input goes to this very process.
void hands(std::vector<std::string> words);

template <class... Numbers>
void hands(const char* verb, Numbers... numbers) {
  hands(std::vector<std::string>{verb, std::to_string(numbers)...});
}

/// Waits until the window, which shows by that title, has the keyboard.
void focusWindow(GtkWindow* window, const char* title);

/// An attached and focused window of 360 by 720 points at the display's corner that holds a text entry, and the
/// visitor's hands on it.
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

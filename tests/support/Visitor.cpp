#include "Visitor.h"

#include <utility>

#include "glib/GRef.h"
#include "ui/GtkApplicationPort.h"
#include "ui/Widgets.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

constexpr const char* title = "orivex-visitor";

GtkWindow* firstWindow() {
  adw_init();
  install();
  return GTK_WINDOW(gtk_window_new());
}

}  // namespace

bool hasTouch() {
  return g_getenv("ORIVEX_HANDS") != nullptr;
}

void hands(std::vector<std::string> words) {
  words.insert(words.begin(), ORIVEX_HANDS_PROGRAM);
  std::vector<const char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(word.c_str());
  arguments.push_back(nullptr);
  const auto program =
      GRef<GSubprocess>::adopt(g_subprocess_newv(arguments.data(), G_SUBPROCESS_FLAGS_STDOUT_SILENCE, nullptr));
  ASSERT_TRUE(program);
  ASSERT_TRUE(wait([&] { return g_subprocess_get_identifier(program.get()) == nullptr; }, 30));
  EXPECT_TRUE(g_subprocess_get_successful(program.get())) << words[1];
  pass(0.05);
}

// A busy display server now and then gives the keyboard to a window that was shown before.
void focusWindow(GtkWindow* window, const char* windowTitle) {
  bool isActive = false;
  for (int tries = 0; tries < 5 && !isActive; ++tries) {
    hands({"focus", windowTitle});
    isActive = wait([&] { return gtk_window_is_active(window) != FALSE; }, 4);
  }
  EXPECT_TRUE(isActive);
}

VisitorWindow::VisitorWindow() : window_(firstWindow()), entry_(gtk_entry_new()) {
  gtk_window_set_title(window_, title);
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_default_size(window_, 360, 720);
  gtk_window_set_child(window_, entry_);
  setAccessibleLabel(entry_, "entry");
  view_ = attach(window_)->rootViewController()->view();
  gtk_window_present(window_);
  wait([&] { return gtk_widget_get_mapped(entry_) != FALSE; }, 10);
  focusWindow(window_, title);
}

GtkOverlay* VisitorWindow::overlay() const {
  return dynamic_cast<GtkApplicationPort&>(Platform::current().application).find(window_)->overlay();
}

void VisitorWindow::destroy() {
  if (auto* const window = std::exchange(window_, nullptr)) gtk_window_destroy(window);
}

void VisitorWindow::press(const std::vector<std::string>& keys) {
  for (const auto& key : keys) hands({"key", key});
}

void VisitorWindow::click(double x, double y) {
  hands("tap", x, y);  // a finger where there is a touch screen
}

void VisitorWindow::click(GtkWidget* widget) const {
  double x = 0;
  double y = 0;
  ASSERT_TRUE(gtk_widget_translate_coordinates(widget, GTK_WIDGET(window_), gtk_widget_get_width(widget) / 2.0,
                                               gtk_widget_get_height(widget) / 2.0, &x, &y));
  click(x, y);
}

}  // namespace orivex::gtk

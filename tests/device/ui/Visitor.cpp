#include "Visitor.h"

#include <functional>
#include <utility>

#include <adwaita.h>
#include <gtest/gtest.h>

#include "../GtkFixture.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

constexpr const char* title = "orivex-visitor";

// The main loop runs meanwhile: the input goes to this very process.
void runTool(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "xdotool");
  std::vector<char*> argv;
  for (auto& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  GPid pid = 0;
  ASSERT_TRUE(g_spawn_async(nullptr, argv.data(), nullptr,
                            static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD), nullptr, nullptr,
                            &pid, nullptr));
  bool ended = false;
  g_child_watch_add(
      pid, [](GPid, gint, gpointer data) { *static_cast<bool*>(data) = true; }, &ended);
  ASSERT_TRUE(wait([&] { return ended; }, 10));
  pass(0.02);
}

GtkWidget* find(GtkWidget* parent, const std::function<bool(GtkWidget*)>& matches) {
  for (GtkWidget* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
    if (matches(child)) return child;
    if (GtkWidget* const found = find(child, matches)) return found;
  }
  return nullptr;
}

}  // namespace

VisitorWindow::VisitorWindow() {
  adw_init();
  install();
  window_ = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window_, title);
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_default_size(window_, 360, 720);
  entry_ = gtk_entry_new();
  gtk_window_set_child(window_, entry_);
  attach(window_);
  gtk_window_present(window_);
  wait([&] { return gtk_widget_get_mapped(entry_) != FALSE; }, 10);
  // No window manager does it.
  runTool({"search", "--sync", "--onlyvisible", "--name", title, "windowfocus", "--sync"});
  wait([&] { return gtk_window_is_active(window_) != FALSE; }, 10);
}

GtkOverlay* VisitorWindow::overlay() const {
  return dynamic_cast<GtkApplicationPort&>(Platform::current().application).find(window_)->overlay();
}

void VisitorWindow::destroy() {
  if (auto* const window = std::exchange(window_, nullptr)) gtk_window_destroy(window);
}

void VisitorWindow::press(const std::vector<std::string>& keys) {
  for (const auto& key : keys) runTool({"key", key});
}

void VisitorWindow::click(double x, double y) {
  runTool({"mousemove", std::to_string(static_cast<int>(x)), std::to_string(static_cast<int>(y)), "click", "1"});
}

void VisitorWindow::click(GtkWidget* widget) const {
  double x = 0;
  double y = 0;
  ASSERT_TRUE(gtk_widget_translate_coordinates(widget, GTK_WIDGET(window_), gtk_widget_get_width(widget) / 2.0,
                                               gtk_widget_get_height(widget) / 2.0, &x, &y));
  click(x, y);
}

GtkWidget* findByClass(GtkWidget* parent, const char* cssClass) {
  return find(parent, [&](GtkWidget* widget) { return gtk_widget_has_css_class(widget, cssClass) != FALSE; });
}

GtkWidget* findByText(GtkWidget* parent, const std::string& text) {
  return find(parent, [&](GtkWidget* widget) {
    return GTK_IS_LABEL(widget) && gtk_widget_get_mapped(widget) && text == gtk_label_get_text(GTK_LABEL(widget));
  });
}

}  // namespace orivex::gtk

#include "CameraFixture.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Widgets.h"
#include "glib/GMemory.h"

#include "orivex/gtk/Gtk.h"

namespace orivex::gtk {
namespace {

bool isMarked(GtkWidget* widget, const std::string& mark) {
  if (gtk_widget_has_css_class(widget, mark.c_str())) return true;
  if (!GTK_IS_BUTTON(widget)) return false;
  const char* const label = gtk_button_get_label(GTK_BUTTON(widget));
  const char* const icon = gtk_button_get_icon_name(GTK_BUTTON(widget));
  return (label && mark == label) || (icon && mark == icon);
}

GtkGesture* dragOf(GtkWidget* widget) {
  const auto controllers = GRef<GListModel>::adopt(gtk_widget_observe_controllers(widget));
  for (guint i = 0; i < g_list_model_get_n_items(controllers.get()); ++i) {
    const auto controller = GRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(controllers.get(), i)));
    if (GTK_IS_GESTURE_DRAG(controller.get())) return GTK_GESTURE(controller.get());
  }
  return nullptr;
}

GtkWindow* firstWindow() {
  // A test may be the desktop's sensor on it.
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", g_getenv("DBUS_SESSION_BUS_ADDRESS"), TRUE);
  adw_init();
  install();
  return GTK_WINDOW(gtk_window_new());
}

}  // namespace

CameraFixture::CameraFixture() : window_(firstWindow()) {
  std::filesystem::remove_all(captureFolder());
  gtk_window_set_title(window_, "orivex-camera");
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_default_size(window_, 360, 720);
  gtk_window_set_child(window_, gtk_label_new("Chat"));
  view_ = application_.attach(window_, {}).window()->contentView();
  setConsent(true);
  gtk_window_present(window_);
  wait([&] { return gtk_widget_get_mapped(GTK_WIDGET(window_)) != FALSE; }, hangs);
}

CameraFixture::~CameraFixture() {
  closeWindow();
  setSources("");
}

void CameraFixture::setSources(const std::string& sources) {
  setenv(cameraSourceVariable, sources.c_str(), 1);
}

void CameraFixture::present(const CameraOptions& options) {
  camera_.present(options, *view_, [this](CameraOutcome outcome) { outcomes.push_back(std::move(outcome)); });
}

void CameraFixture::openLive(const std::string& sources, const CameraOptions& options) {
  outcomes.clear();
  setSources(sources);
  present(options);
  ASSERT_TRUE(waitForLive()) << (log.get().empty() ? "" : log.get().back());
  ASSERT_TRUE(wait([&] { return hasSlidIn(); }, hangs));
}

bool CameraFixture::waitForLive() {
  const auto isLive = [&] { return button("shutter") && gtk_widget_get_opacity(button("shutter")) == 1; };
  return wait([&] { return isLive() || !outcomes.empty(); }, hangs) && isLive();
}

bool CameraFixture::hasSlidIn() const {
  graphene_rect_t place;
  auto* const panel = findByClass(GTK_WIDGET(window_), "orivex-sheet");
  return gtk_widget_compute_bounds(panel, GTK_WIDGET(window_), &place) && place.origin.y < 1;
}

bool CameraFixture::waitForReview() {
  return wait([&] { return button("使用") || !outcomes.empty(); }, hangs) && button("使用");
}

bool CameraFixture::waitForOutcome() {
  return wait([&] { return !outcomes.empty(); }, hangs);
}

GtkWidget* CameraFixture::button(const std::string& mark) const {
  if (!window_) return nullptr;
  return findBelow(GTK_WIDGET(window_),
                   [&](GtkWidget* widget) { return gtk_widget_get_mapped(widget) && isMarked(widget, mark); });
}

std::string CameraFixture::clock() const {
  auto* const label = button("clock");
  return label ? gtk_label_get_text(GTK_LABEL(label)) : "";
}

void CameraFixture::click(const std::string& mark) {
  auto* const found = button(mark);
  ASSERT_TRUE(found) << "no button " << mark;
  g_signal_emit_by_name(found, "clicked");
}

void CameraFixture::beginHold() {
  g_signal_emit_by_name(dragOf(button("shutter")), "drag-begin", 10.0, 10.0);
}

void CameraFixture::endHold() {
  g_signal_emit_by_name(dragOf(button("shutter")), "drag-end", 0.0, 0.0);
}

void CameraFixture::hold(int seconds) {
  beginHold();
  ASSERT_TRUE(wait([&] { return clock() == "0:0" + std::to_string(seconds); }, hangs));
  endHold();
}

void CameraFixture::setConsent(std::optional<bool> answer) {
  if (answer) return consent_.remember(*answer);
  std::filesystem::remove(folder_.path() / "permissions.ini");
}

void CameraFixture::closeWindow() {
  if (window_) gtk_window_destroy(std::exchange(window_, nullptr));
}

std::vector<std::string> CameraFixture::files() {
  std::vector<std::string> names;
  if (!std::filesystem::exists(captureFolder())) return names;
  for (const auto& entry : std::filesystem::directory_iterator(captureFolder())) {
    names.push_back(entry.path().filename());
  }
  return names;
}

int CameraFixture::streamingThreads() {
  g_thread_pool_stop_unused_threads();
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::ifstream(entry.path() / "comm") >> name;
    // GStreamer names a streaming thread after the pad that it serves.
    if (name.find(":s") != std::string::npos) ++count;
  }
  return count;
}

}  // namespace orivex::gtk

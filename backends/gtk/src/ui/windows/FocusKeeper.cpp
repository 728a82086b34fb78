#include "FocusKeeper.h"

#include <webkit/webkit.h>

#include "../../glib/GRef.h"
#include "../Canvas.h"
#include "../TitleBar.h"
#include "../Widgets.h"

namespace orivex::gtk {
namespace {

// Enough for the screens that may lie over each other.
constexpr std::size_t historyLimit = 16;

bool takesFocus(GtkWidget* widget) {
  // A page's view takes the focus without calling itself focusable.
  const bool isFocusable = WEBKIT_IS_WEB_VIEW(widget) || gtk_widget_get_focusable(widget);
  if (!isFocusable || !gtk_widget_get_mapped(widget) || !gtk_widget_is_sensitive(widget)) return false;
  for (; widget; widget = gtk_widget_get_parent(widget)) {
    if (!gtk_widget_get_can_focus(widget)) return false;
  }
  return true;
}

// A page that is left by its last control passes the focus on to the text view in which WebKit looks up the keys of its
// fields, and which never shows.
bool isLost(GtkWidget* focus) {
  auto* const parent = gtk_widget_get_parent(focus);
  return parent && GTK_IS_TEXT_VIEW(focus) && WEBKIT_IS_WEB_VIEW(parent);
}

// The uppermost page below a canvas; what a host's own widget holds is the host's.
GtkWidget* pageBelow(GtkWidget* canvas) {
  for (auto* child = gtk_widget_get_last_child(canvas); child; child = gtk_widget_get_prev_sibling(child)) {
    if (WEBKIT_IS_WEB_VIEW(child) && takesFocus(child)) return child;
    if (auto* const page = isCanvas(child) ? pageBelow(child) : nullptr) return page;
  }
  return nullptr;
}

}  // namespace

FocusKeeper::FocusKeeper(GtkWindow* window, GtkWidget* screens, MainQueue& mainQueue)
    : window_(window), screens_(screens), mainQueue_(mainQueue) {
  focus_ = SignalConnection::connect(window_, "notify::focus-widget", [this] { focusChanged(); });
  if (auto* const focus = gtk_window_get_focus(window_)) remember(focus);
}

void FocusKeeper::clear() {
  lastShown_ = shown();
  cleared_ = true;
  gtk_window_set_focus(window_, nullptr);
}

void FocusKeeper::focusChanged() {
  if (gtk_widget_in_destruction(GTK_WIDGET(window_))) return;
  if (auto* const focus = gtk_window_get_focus(window_)) {
    cleared_ = false;
    if (!isLost(focus)) remember(focus);
  }
  updateLater();
}

void FocusKeeper::remember(GtkWidget* widget) {
  history_.remove_if([&](WeakWidget& known) {
    const auto kept = GRef<GtkWidget>::adopt(static_cast<GtkWidget*>(g_weak_ref_get(&known.reference)));
    return !kept || kept.get() == widget;
  });
  history_.emplace_front(widget);
  if (history_.size() > historyLimit) history_.pop_back();
}

// From the queue: whoever changes what shows, or moves the focus, has its own steps still to take.
void FocusKeeper::updateLater() {
  if (std::exchange(pending_, true)) return;
  mainQueue_.async(alive_.guard([this] {
    pending_ = false;
    update();
  }));
}

void FocusKeeper::update() {
  const auto now = shown();
  const auto [screen, page] = now;
  // A screen that keeps what is below it from the focus, such as the camera, has it itself.
  if (!screen || !gtk_widget_get_can_focus(screens_)) return;
  const bool changed = std::exchange(lastShown_, now) != now;
  cleared_ = cleared_ && !changed;
  if (cleared_ || (!page && !changed)) return;
  GtkWidget* const focus = gtk_window_get_focus(window_);
  if (focus && !isLost(focus) && (isInside(focus, screen) || !isInside(focus, screens_) || isInTitleBar(focus))) return;
  if (restoreFocusIn(screen) || (!page && !focus)) return;
  gtk_window_set_focus(window_, page);
}

bool FocusKeeper::restoreFocusIn(GtkWidget* screen) {
  for (auto& known : history_) {
    const auto widget = GRef<GtkWidget>::adopt(static_cast<GtkWidget*>(g_weak_ref_get(&known.reference)));
    if (!widget || !isInside(widget.get(), screen) || !takesFocus(widget.get())) continue;
    gtk_window_set_focus(window_, widget.get());
    return true;
  }
  return false;
}

// The host's own widgets show theirs as GTK does it.
bool FocusKeeper::isOurs() const {
  GtkWidget* const focus = gtk_window_get_focus(window_);
  if (!focus || isInside(focus, screens_)) return !focus || shown().second;
  GtkWidget* const overlay = gtk_widget_get_parent(screens_);
  return overlay && isInside(focus, overlay);
}

FocusKeeper::Shown FocusKeeper::shown() const {
  for (auto* screen = gtk_widget_get_last_child(screens_); screen; screen = gtk_widget_get_prev_sibling(screen)) {
    if (gtk_widget_get_mapped(screen) && gtk_widget_get_can_target(screen)) return {screen, pageBelow(screen)};
  }
  return {};
}

}  // namespace orivex::gtk

#include "EmbeddedScreen.h"

#include <utility>

namespace orivex::gtk {
namespace {

// Points that the chat's sheets need.
constexpr int leastWidth = 240;
constexpr int leastHeight = 160;

}  // namespace

EmbeddedScreen::EmbeddedScreen(std::shared_ptr<ViewController> screen, MainQueue& mainQueue,
                               std::function<void(GtkWindow*)> shown, std::function<void(const HostWindow&)> ended)
    : HostWindow(GTK_OVERLAY(gtk_overlay_new()), mainQueue, std::move(ended)),
      mainQueue_(mainQueue),
      screen_(std::move(screen)),
      shown_(std::move(shown)) {
  auto* const widget = GTK_WIDGET(overlay());
  // A GtkPaned hides what asks for nothing.
  gtk_widget_set_size_request(widget, leastWidth, leastHeight);
  gtk_widget_set_overflow(widget, GTK_OVERFLOW_HIDDEN);  // beside it is the host's
  gtk_widget_set_hexpand(widget, TRUE);
  gtk_widget_set_vexpand(widget, TRUE);
  connections_.add(widget, "notify::root", [this] { rootChanged(); });
  connections_.add(widget, "map", [this] { appear(); });
  connections_.add(widget, "unmap", [this] { window()->setShowing(false); });
  connections_.add(widget, "destroy", [this] { end(); });
}

EmbeddedScreen::~EmbeddedScreen() {
  connections_.disconnect();
  clear();
}

// From the queue: a host that changes its layout takes the widget out and puts it in again.
void EmbeddedScreen::rootChanged() {
  auto* const root = gtk_widget_get_root(GTK_WIDGET(overlay()));
  setGtkWindow(GTK_IS_WINDOW(root) ? GTK_WINDOW(root) : nullptr);
  mainQueue_.async(alive_.guard([this] {
    if (!gtkWindow()) leave();
  }));
}

void EmbeddedScreen::appear() {
  if (gtkWindow()) shown_(gtkWindow());
  // A host that is told so may end the widget at once.
  const auto shownIn = window();
  const auto screen = screen_;
  if (shownIn->rootViewController()) {
    shownIn->setShowing(true);
  } else {
    shownIn->setRootViewController(screen);
  }
}

void EmbeddedScreen::leave() {
  window()->setRootViewController(nullptr);
}

}  // namespace orivex::gtk

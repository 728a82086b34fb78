#pragma once

#include <list>
#include <utility>

#include <gtk/gtk.h>

#include "../../glib/SignalConnection.h"
#include "../FocusRing.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Sees to it that keys reach what shows in one window. While a page shows, some control of the screen around it has
/// the focus, whatever takes it away; when the page has gone, the widget has it that had it before, if that still
/// shows. What lies above the screens, and a focus that the host gives up without a page, are left alone. The visitor
/// who uses keys sees which widget of ours has the focus. Main thread.
class FocusKeeper {
 public:
  /// `screens` is the canvas of the screens in `window`. Both outlive this object.
  FocusKeeper(GtkWindow* window, GtkWidget* screens, MainQueue& mainQueue);
  FocusKeeper(const FocusKeeper&) = delete;
  FocusKeeper& operator=(const FocusKeeper&) = delete;
  ~FocusKeeper() = default;

  /// What shows may have changed.
  void updateLater();

  /// Takes the focus away until something else shows or the visitor puts it somewhere.
  void clear();

 private:
  /// The uppermost screen that takes input, and the uppermost page in it.
  using Shown = std::pair<GtkWidget*, GtkWidget*>;

  /// Does not keep its widget alive.
  struct WeakWidget {
    explicit WeakWidget(GtkWidget* widget) { g_weak_ref_init(&reference, widget); }
    WeakWidget(const WeakWidget&) = delete;
    WeakWidget& operator=(const WeakWidget&) = delete;
    ~WeakWidget() { g_weak_ref_clear(&reference); }
    GWeakRef reference{};
  };

  void focusChanged();
  void remember(GtkWidget* widget);
  void update();
  bool restoreFocusIn(GtkWidget* screen);
  Shown shown() const;
  bool isOurs() const;

  GtkWindow* const window_;
  GtkWidget* const screens_;
  MainQueue& mainQueue_;
  std::list<WeakWidget> history_;  // that had the focus, the latest first
  Shown lastShown_;                // compared only
  bool cleared_ = false;
  bool pending_ = false;
  SignalConnection focus_;
  const FocusRing ring_{window_, [this] { return isOurs(); }};
  Alive alive_;
};

}  // namespace orivex::gtk

#pragma once

#include <functional>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The round button of a camera: a tap, and a hold from its beginning to its end, by the pointer or with Space or
/// Enter. A ring around it fills while a video is recorded. Main thread.
class ShutterButton {
 public:
  struct Handlers {
    std::function<void()> tapped;
    std::function<void()> held;
    std::function<void()> released;  ///< after each `held`
  };

  ShutterButton(MainQueue& main, Handlers handlers);
  ShutterButton(const ShutterButton&) = delete;
  ShutterButton& operator=(const ShutterButton&) = delete;
  ~ShutterButton();

  GtkWidget* widget() const { return button_.get(); }

  /// A key that presses buttons goes down or up, here or where no button takes it.
  bool keyPressed(guint key);
  void keyReleased();

  /// `fraction` of the longest recording, from 0 to 1.
  void showRecording(double fraction);
  void showIdle();

 private:
  enum class Press { none, down, held };

  void listenToKeys();
  void press();
  void release();
  void listenToPointer();
  void endHold();
  void draw(cairo_t* context) const;

  MainQueue& main_;
  const Handlers handlers_;
  GRef<GtkWidget> button_;
  GtkWidget* drawing_ = gtk_drawing_area_new();
  Press press_ = Press::none;
  unsigned presses_ = 0;
  bool byKey_ = false;
  bool recording_ = false;
  double fraction_ = 0;
  SignalConnections connections_;
  Alive alive_;
};

}  // namespace orivex::gtk

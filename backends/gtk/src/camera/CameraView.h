#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "../ui/HeldKeys.h"
#include "FrameView.h"
#include "ShutterButton.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The widgets of the camera screen: a picture on black, and over it the buttons. Main thread.
class CameraView {
 public:
  /// Each may destroy the view, but not before the call has returned to the main loop.
  struct Handlers {
    std::function<void()> close;
    std::function<void()> tapped;
    std::function<void()> held;
    std::function<void()> released;
    std::function<void()> switchCamera;
    std::function<void()> retake;
    std::function<void()> use;
  };

  /// `insets`: the window's edges that hold no buttons. `hint`: what the shutter can do, in a few words.
  /// `heldKeys` are down when it opens; they do nothing here before they were released.
  CameraView(MainQueue& main, const EdgeInsets& insets, const HeldKeys::Keys& heldKeys, const std::string& hint,
             Handlers handlers);
  CameraView(const CameraView&) = delete;
  CameraView& operator=(const CameraView&) = delete;
  ~CameraView() = default;

  GtkWidget* widget() const { return root_.get(); }
  FrameView& picture() { return picture_; }

  /// Black, and a moving sign after a moment, until there is a picture.
  void showOpening(bool canSwitch);
  void showLive();
  /// Seconds of the recording and of the longest one.
  void showRecording(double seconds, double longest);
  /// The capture is being written.
  void showWorking();
  void showReview();

  /// A short text over the picture for a moment.
  void showNotice(const std::string& text);

 private:
  void buildTop(const EdgeInsets& insets);
  void buildBottom(const EdgeInsets& insets, const std::string& hint);
  GtkWidget* liveControls(const std::string& hint);
  GtkWidget* reviewControls();
  void showControls(const char* page, bool enabled);
  void showSpinner(bool spins);

  bool keyPressed(guint key);

  MainQueue& main_;
  const Handlers handlers_;
  FrameView picture_;
  ShutterButton shutter_;
  GRef<GtkWidget> root_;
  GtkWidget* spinner_ = gtk_spinner_new();
  GtkWidget* clock_ = nullptr;
  GtkWidget* notice_ = nullptr;
  GtkWidget* controls_ = nullptr;
  GtkWidget* hint_ = nullptr;
  GtkWidget* switch_ = nullptr;
  GtkWidget* use_ = nullptr;
  unsigned notices_ = 0;
  bool opening_ = false;
  std::unique_ptr<HeldKeys> heldKeys_;
  SignalConnections connections_;
  Alive alive_;
};

}  // namespace orivex::gtk

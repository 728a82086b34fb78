#pragma once

#include <string>

#include <adwaita.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "Canvas.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// A panel over a mask that dims the rest of a window and takes its input: in a small window a sheet that slides up
/// from the bottom edge and goes back there with its grabber, in a larger one a dialog that fades in at its middle. It
/// goes by its owner's call, by Escape and by a tap on the mask. While it is open the keyboard focus stays inside;
/// afterwards it is where it was before. Assistive technology sees a modal dialog. Main thread.
class Sheet : private CanvasDelegate {
 public:
  enum class Extent {
    /// The content's natural height while the window has room for it, so content that may be long belongs into a
    /// scrolled window that propagates its natural height; the window's width, at most 560 points.
    natural,
    /// All of a small window, and much of a larger one. Only its owner and Escape close it.
    large,
  };

  /// Opens over `parent`, the host window's overlay (`HostWindow::overlay`), and shows `content`, whose floating
  /// reference it takes. `label` names the dialog to screen readers. `onClosed` is called once, from the queue, when
  /// the sheet has gone for any reason other than its destruction, the window's end among them; it may destroy the
  /// sheet.
  Sheet(GtkOverlay* parent, MainQueue& mainQueue, GtkWidget* content, const std::string& label, Once<void()> onClosed,
        Extent extent = Extent::natural);
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;
  /// Takes the sheet away at once, without a word to the owner.
  ~Sheet() override;

  /// Lets the sheet slide or fade away. From here on it takes no input and the focus is given back.
  void close();

 private:
  int minimumSize(GtkOrientation orientation, int forSize) override;
  void allocate(int width, int height) override;
  void snapshot(GtkSnapshot* snapshot) override;

  void build(GtkWidget* content, const std::string& label);
  void listen();
  void listenToGrabber();
  void animateTo(double shown);
  void show(double shown);
  void takeFocus();
  void releaseInput();
  void moveFocus(GtkDirectionType direction);
  void detach();

  bool isOnPanel(double x, double y) const;
  bool keyPressed(guint key, GdkModifierType modifiers);
  void focusMoved(GtkRoot* window);
  void finishLater();

  GtkOverlay* parent_;
  MainQueue& mainQueue_;
  Once<void()> onClosed_;
  const Extent extent_;
  GRef<GtkWidget> mask_;
  GtkWidget* panel_ = nullptr;
  GtkWidget* grabber_ = nullptr;
  double shown_ = 0;  // from 0, away, to 1
  bool isDialog_ = false;
  GRef<AdwAnimation> animation_;
  GWeakRef focusBefore_;
  bool closing_ = false;
  bool movingFocus_ = false;
  bool pressedOnMask_ = false;
  bool grabbed_ = false;
  SignalConnection mapped_;
  SignalConnections input_;
  SignalConnection animationDone_;
  SignalConnection parentDestroyed_;
  Alive alive_;
};

}  // namespace orivex::gtk

#pragma once

#include <string>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// A panel with rounded top corners that slides up from the bottom of a window, over a mask that dims the rest and
/// takes its input. It goes by its owner's call, by Escape and by a tap on the mask. While it is open the keyboard
/// focus stays inside; afterwards it is where it was before. Assistive technology sees a modal dialog. Main thread.
class Sheet {
 public:
  /// Opens over `parent`, the host window's overlay (`HostWindow::overlay`), and shows `content`, whose floating
  /// reference it takes. The panel takes the content's natural height while the window has room for it, so content that
  /// may be long belongs into a scrolled window that propagates its natural height; its width is the window's, at most
  /// 560 points. `label` names the dialog to screen readers. `onClosed` is called once, from the queue, when the sheet
  /// has gone for any reason other than its destruction, the window's end among them; it may destroy the sheet.
  Sheet(GtkOverlay* parent, MainQueue& mainQueue, GtkWidget* content, const std::string& label, Once<void()> onClosed);
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;
  /// Takes the sheet away at once, without a word to the owner.
  ~Sheet();

  /// Lets the sheet slide away. From here on it takes no input and the focus is given back.
  void close();

 private:
  void build(GtkWidget* content, const std::string& label);
  void listen();
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
  GRef<GtkWidget> mask_;
  GtkRevealer* revealer_ = nullptr;
  GtkWidget* panel_ = nullptr;
  GWeakRef focusBefore_;
  bool closing_ = false;
  bool movingFocus_ = false;
  bool pressedOnMask_ = false;
  SignalConnection mapped_;
  SignalConnections input_;
  SignalConnections end_;
  Alive alive_;
};

}  // namespace orivex::gtk

#pragma once

#include <memory>
#include <string>

#include <adwaita.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "FocusRing.h"
#include "HeldKeys.h"

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// A question with a button for each answer: inside its window where libadwaita has such dialogs (1.5), else a window
/// of its own over it. Destroying it takes it off the screen. Main thread.
class AlertDialog {
 public:
  AlertDialog(GtkWindow* parent, const std::string& heading, const char* body);
  AlertDialog(const AlertDialog&) = delete;
  AlertDialog& operator=(const AlertDialog&) = delete;
  ~AlertDialog();

  /// The last one added stands where the eye looks for the usual answer.
  void addAnswer(const char* id, const char* label, AdwResponseAppearance appearance = ADW_RESPONSE_DEFAULT);
  /// What Enter gives, null for nothing, and what Escape and closing give.
  void setDefaults(const char* entered, const char* closed);
  /// For a consent that no key may give by accident: none of the answers has the focus at first, and a key counts only
  /// when it goes down after the dialog has come. `down` are the keys that are held now.
  void takeFreshKeysOnly(HeldKeys::Keys down);
  /// Lies in the body's place; `text` is what it tells.
  void setContent(GtkWidget* content, const std::string& text);

  /// `answered` is called once, with the answer's id or, when the dialog goes with its window, with null; it may
  /// destroy this object. A dialog that is not modal leaves the window its keys and buttons where it is a window of its
  /// own.
  void present(bool isModal, Once<void(const char* id)> answered);

 private:
  void describe(const std::string& text);
  void close();

  GtkWindow* const parent_;
  std::string spoken_;
  GRef<GtkWidget> dialog_;  // null when it is off the screen
  Once<void(const char*)> answered_;
  std::unique_ptr<HeldKeys> keys_;
  std::unique_ptr<FocusRing> ring_;  // in a window of its own
  SignalConnections connections_;
};

}  // namespace orivex::gtk

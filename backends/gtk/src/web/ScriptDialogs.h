#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <webkit/webkit.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "../ui/AlertDialog.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The alerts, confirmations and prompts of one page as dialogs over its window, under the page's origin. The page's
/// scripts stand still while one is open, so each is answered: by the visitor, or as declined when the page's process
/// or this object goes, or while the page does not show. A page that raises several in a row can be silenced; it then
/// stays so: alerts are closed, confirmations and prompts declined, and it may be left.
class ScriptDialogs {
 public:
  /// `view` outlives this object. `isCovered` tells whether something else shows in place of the page.
  ScriptDialogs(WebKitWebView* view, MainQueue& mainQueue, std::function<bool()> isCovered);
  ScriptDialogs(const ScriptDialogs&) = delete;
  ScriptDialogs& operator=(const ScriptDialogs&) = delete;
  ~ScriptDialogs();

  /// Declines what is open and takes it off the screen.
  void dismiss();

 private:
  class Question;

  void asked(WebKitScriptDialog* dialog);
  void answerLater(std::unique_ptr<Question> question, bool accepted);
  void show(std::unique_ptr<Question> question, GtkWindow* window);
  GtkWidget* makeContent(const std::string& body);
  void answered(const char* response);
  bool isInARow() const;

  WebKitWebView* const view_;
  MainQueue& mainQueue_;
  const std::function<bool()> isCovered_;
  std::unique_ptr<Question> question_;  // the open one
  std::unique_ptr<AlertDialog> dialog_;
  GRef<GtkCheckButton> silence_;  // null while it is not offered
  int countInARow_ = 0;
  std::optional<double> lastClosed_;
  bool silenced_ = false;
  SignalConnection asked_;
};

}  // namespace orivex::gtk

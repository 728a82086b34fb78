#pragma once

#include <functional>
#include <memory>

#include <webkit/webkit.h>

#include "../glib/SignalConnection.h"
#include "../ui/AlertDialog.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Asks the visitor what to do about a page that does not answer: wait, and be asked again, or leave. A page that hangs
/// when this object goes loses its process, which would otherwise go on for ever.
class HangWatch {
 public:
  /// `view` outlives this object. While `isCovered`, something else shows in place of the page. `leave` may end it.
  HangWatch(WebKitWebView* view, MainQueue& mainQueue, std::function<bool()> isCovered, std::function<void()> leave);
  HangWatch(const HangWatch&) = delete;
  HangWatch& operator=(const HangWatch&) = delete;
  ~HangWatch();

  /// Takes the question off the screen; it comes again while the page still hangs.
  void postpone();

 private:
  void changed();
  void askLater();
  void ask();
  void answered(const char* answer);

  WebKitWebView* const view_;
  MainQueue& mainQueue_;
  const std::function<bool()> isCovered_;
  const std::function<void()> leave_;
  int hang_ = 0;  // counts them, so that a question for one that has ended is not asked
  std::unique_ptr<AlertDialog> dialog_;
  SignalConnection changed_;
  Alive alive_;
};

}  // namespace orivex::gtk

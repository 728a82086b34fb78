#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <webkit/webkit.h>

#include "contract/WebRecorder.h"
#include "support/LogLines.h"
#include "support/ScreenFixture.h"
#include "support/SocketServer.h"
#include "support/Visitor.h"
#include "support/Widgets.h"

namespace orivex::gtk {

/// One web engine that fills a focused window of 360 by 720 points at the display's corner, with a record of what its
/// page asks for and the visitor's hands.
class PageFixture : public ::testing::Test {
 protected:
  explicit PageFixture(const WebEngineConfiguration& configuration = {});
  ~PageFixture() override;

  /// Serves `site` by target, whole replies, with `body` as the page at "/", and loads that.
  void open(const std::string& body, std::map<std::string, SocketServer::Answer> site = {});

  /// Ends the engine.
  void closePage();

  /// Ends the window under the engine.
  void destroyWindow();

  WebKitWebView* view() const;
  std::string url(const std::string& target) const { return server_->url(target); }

  /// Result of a script as text. Scripts from here count as a gesture of the visitor.
  std::string evaluate(const std::string& script);

  /// Runs a script that may stand still for a dialog.
  void run(const std::string& script);

  /// Waits until `script` gives `value`.
  bool becomes(const std::string& script, const std::string& value);

  static bool waitForDialog() {
    // On X11 nobody gives it the keyboard.
    // In newer toolkits it is a part of its window.
    const auto mayTakeKeys = [](GtkWidget* dialog) {
      return !GTK_IS_WINDOW(dialog) || gtk_window_is_active(GTK_WINDOW(dialog));
    };
    return wait([&] { return openDialog() && (!hasTouch() || mayTakeKeys(openDialog())); }, 10);
  }

  /// How many loads have come to their end.
  std::ptrdiff_t finished() const { return std::count(web_->events.begin(), web_->events.end(), "finish"); }

  LogLines log;
  std::optional<contract::WebRecorder> web_;

 private:
  GtkWindow* window_;
  std::unique_ptr<SocketServer> server_;
};

/// The headers of a page.
inline const std::string htmlHeader = "Content-Type: text/html; charset=utf-8\r\n";

}  // namespace orivex::gtk

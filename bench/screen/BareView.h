#pragma once

#include <functional>
#include <string>

#include <webkit/webkit.h>

#include "glib/GRef.h"

namespace orivex::bench {

/// The yardstick: a web view of WebKitGTK with one message handler, "trackEvent", and nothing else.
class BareView {
 public:
  explicit BareView(std::function<void()> posted);
  BareView(const BareView&) = delete;
  BareView& operator=(const BareView&) = delete;
  ~BareView();

  GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }
  void load(const std::string& address) { webkit_web_view_load_uri(view_.get(), address.c_str()); }
  void evaluate(const std::string& script);
  void endProcess() { webkit_web_view_terminate_web_process(view_.get()); }

 private:
  std::function<void()> posted_;
  gtk::GRef<WebKitUserContentManager> content_;
  gtk::GRef<WebKitWebView> view_;
};

}  // namespace orivex::bench

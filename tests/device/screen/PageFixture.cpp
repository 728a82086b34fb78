#include "PageFixture.h"

#include <utility>

#include "web/WebKitEngine.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

constexpr const char* windowTitle = "orivex-page";

GtkWindow* firstWindow() {
  // Without a graphics card the other way of painting loses the visitor's first input.
  g_setenv("WEBKIT_DISABLE_COMPOSITING_MODE", "1", FALSE);
  adw_init();
  install();
  return GTK_WINDOW(gtk_window_new());
}

}  // namespace

PageFixture::PageFixture(const WebEngineConfiguration& configuration) : window_(firstWindow()) {
  gtk_window_set_title(window_, windowTitle);
  gtk_window_set_decorated(window_, FALSE);
  gtk_window_set_default_size(window_, 360, 720);
  web_.emplace(Platform::current(), configuration);
  gtk_window_set_child(window_, GTK_WIDGET(view()));
  gtk_window_present(window_);
  wait([&] { return gtk_widget_get_mapped(GTK_WIDGET(view())) != FALSE; }, 10);
  focusWindow(window_, windowTitle);
}

PageFixture::~PageFixture() {
  closePage();
  if (window_) destroyWindow();
}

void PageFixture::destroyWindow() {
  gtk_window_destroy(std::exchange(window_, nullptr));
}

void PageFixture::open(const std::string& body, std::map<std::string, SocketServer::Answer> site) {
  site.emplace("/", SocketServer::Answer{reply(200, "<!doctype html><meta charset=utf-8><body>" + body, htmlHeader)});
  server_ = std::make_unique<SocketServer>([site = std::move(site)](const std::string& target) {
    const auto found = site.find(target);
    return found == site.end() ? SocketServer::Answer{reply(404, "")} : found->second;
  });
  const auto before = finished();
  web_->load(url("/"));
  ASSERT_TRUE(wait([&] { return finished() > before; }, 20));
}

void PageFixture::closePage() {
  if (!web_->engine) return;
  if (window_) gtk_window_set_child(window_, nullptr);
  web_->engine.reset();
}

WebKitWebView* PageFixture::view() const {
  return WEBKIT_WEB_VIEW(dynamic_cast<WebKitEngine&>(*web_->engine).widget());
}

std::string PageFixture::evaluate(const std::string& script) {
  return evaluateIn(view(), script);
}

void PageFixture::run(const std::string& script) {
  web_->engine->evaluate(script, nullptr);
}

bool PageFixture::becomes(const std::string& script, const std::string& value) {
  const bool became = wait([&] { return evaluate(script) == value; }, 10);
  EXPECT_TRUE(became) << script << " is " << evaluate(script);
  return became;
}

}  // namespace orivex::gtk

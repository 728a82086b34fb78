#include "DesktopLauncher.h"

#include <algorithm>
#include <string>
#include <string_view>

#include <gdk/gdk.h>
#include <gio/gio.h>

#include "Sandbox.h"
#include "glib/AsyncCallback.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr std::int64_t leastInterval = G_USEC_PER_SEC;

// A mail program would attach a file of the page's choosing.
bool attachesFiles(const Url& url) {
  const auto& text = url.absoluteString();
  const auto query = text.substr(std::min(text.find('?'), text.size()));
  const GCharPtr decoded(g_uri_unescape_string(query.c_str(), nullptr));
  const GCharPtr lower(g_ascii_strdown(decoded ? decoded.get() : query.c_str(), -1));
  return std::string_view(lower.get()).find("attach") != std::string_view::npos;
}

// With the display's context the opened application may take the focus.
GRef<GAppLaunchContext> launchContext() {
  auto* const display = gdk_display_get_default();
  if (!display) return nullptr;
  return GRef<GAppLaunchContext>::adopt(G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(display)));
}

}  // namespace

bool DesktopLauncher::isAllowed(const Url& url) const {
  const auto scheme = url.scheme();
  return schemes_.contains(scheme) && !(scheme == "mailto" && attachesFiles(url));
}

bool DesktopLauncher::canOpen(const Url& url) const {
  if (!isAllowed(url) || runsInSandbox()) return isAllowed(url);
  return bool(GRef<GAppInfo>::adopt(g_app_info_get_default_for_uri_scheme(url.scheme().c_str())));
}

void DesktopLauncher::open(const Url& url) {
  const auto now = g_get_monotonic_time();
  if (!isAllowed(url) || (lastOpened_ && now - *lastOpened_ < leastInterval)) {
    log::print("An address was not opened: " + url.absoluteString(), log::Level::info);
    return;
  }
  lastOpened_ = now;
  const auto launched = asyncCallback([](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    g_app_info_launch_default_for_uri_finish(result, &raised);
    if (const GErrorPtr error(raised); error) log::warning(std::string("Error opening an address: ") + error->message);
  });
  g_app_info_launch_default_for_uri_async(url.absoluteString().c_str(), launchContext().get(), nullptr,
                                          launched.function, launched.data);
}

}  // namespace orivex::gtk

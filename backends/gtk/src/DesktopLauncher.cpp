#include "DesktopLauncher.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <gdk/gdk.h>
#include <gio/gio.h>

#include "Contained.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr std::array<std::string_view, 4> usualSchemes{"http", "https", "mailto", "tel"};

bool runsInSandbox() {
  return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS) || g_getenv("SNAP");
}

GRef<GAppInfo> schemeHandler(const std::string& scheme) {
  return GRef<GAppInfo>::adopt(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
}

GRef<GAppInfo> fileHandler(const Url& url) {
  const auto file = GRef<GFile>::adopt(g_file_new_for_uri(url.absoluteString().c_str()));
  return GRef<GAppInfo>::adopt(g_file_query_default_handler(file.get(), nullptr, nullptr));
}

// With the display's context the opened application may take the focus.
GRef<GAppLaunchContext> launchContext() {
  auto* const display = gdk_display_get_default();
  if (!display) return nullptr;
  return GRef<GAppLaunchContext>::adopt(G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(display)));
}

void launched(GObject*, GAsyncResult* result, gpointer) noexcept {
  GError* raised = nullptr;
  g_app_info_launch_default_for_uri_finish(result, &raised);
  const GErrorPtr error(raised);
  contained([&] {
    if (error) log::print(std::string("Error opening an address: ") + error->message);
  });
}

}  // namespace

bool DesktopLauncher::canOpen(const Url& url) const {
  const auto scheme = url.scheme();
  if (scheme.empty()) return false;
  if (runsInSandbox()) return std::find(usualSchemes.begin(), usualSchemes.end(), scheme) != usualSchemes.end();
  return static_cast<bool>(scheme == "file" ? fileHandler(url) : schemeHandler(scheme));
}

void DesktopLauncher::open(const Url& url) const {
  g_app_info_launch_default_for_uri_async(url.absoluteString().c_str(), launchContext().get(), nullptr, launched,
                                          nullptr);
}

}  // namespace orivex::gtk

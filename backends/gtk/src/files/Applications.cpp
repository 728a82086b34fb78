#include "Applications.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <gdk/gdk.h>

#include "../Contained.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

using List = std::vector<GRef<GAppInfo>>;

void add(List& list, GRef<GAppInfo> application, bool isLocal) {
  if (!application || !g_app_info_should_show(application.get())) return;
  // A program that takes only paths cannot reach the web; for a local file GIO turns the address into a path.
  if (!isLocal && !g_app_info_supports_uris(application.get())) return;
  const bool known = std::any_of(list.begin(), list.end(), [&](const GRef<GAppInfo>& other) {
    return g_app_info_equal(other.get(), application.get()) != FALSE;
  });
  if (!known) list.push_back(std::move(application));
}

void addAll(List& list, const GListPtr& applications, bool isLocal) {
  for (const GList* item = applications.get(); item; item = item->next) {
    add(list, GRef<GAppInfo>::adopt(G_APP_INFO(item->data)), isLocal);
  }
}

// The default application first, then those made for the type, then those for a more general one.
void addForType(List& list, const std::string& type, bool isLocal) {
  add(list, GRef<GAppInfo>::adopt(g_app_info_get_default_for_type(type.c_str(), isLocal ? FALSE : TRUE)), isLocal);
  addAll(list, GListPtr(g_app_info_get_recommended_for_type(type.c_str())), isLocal);
  addAll(list, GListPtr(g_app_info_get_fallback_for_type(type.c_str())), isLocal);
}

// Of the last part of the path, before any query.
std::string extensionOf(const Url& url) {
  std::string_view path = url.absoluteString();
  path.remove_prefix(std::min(path.size(), url.origin().size()));
  path = path.substr(0, path.find_first_of("?#"));
  const auto name = path.substr(path.rfind('/') + 1);
  const auto dot = name.rfind('.');
  return std::string(dot == std::string_view::npos ? "" : name.substr(dot + 1));
}

std::optional<std::string> typeOf(const Url& url, const TypeRegistry& types) {
  const auto path = url.filePath();
  if (!path) return types.mimeType(extensionOf(url));
  const auto type = types.typeIdentifier(*path);
  const auto* const known = std::get_if<std::string>(&type);
  return known ? std::optional(*known) : std::nullopt;
}

void launched(GObject* source, GAsyncResult* result, gpointer) noexcept {
  GError* raised = nullptr;
  g_app_info_launch_uris_finish(G_APP_INFO(source), result, &raised);
  const GErrorPtr error(raised);
  contained([&] {
    if (error) log::print(std::string("Error opening a file: ") + error->message);
  });
}

}  // namespace

List applicationsFor(const Url& file, const TypeRegistry& types) {
  const auto scheme = file.scheme();
  const bool isLocal = scheme == "file";
  List list;
  if (!isLocal && scheme != "http" && scheme != "https") return list;
  if (const auto type = typeOf(file, types)) addForType(list, *type, isLocal);
  if (!isLocal) add(list, GRef<GAppInfo>::adopt(g_app_info_get_default_for_uri_scheme(scheme.c_str())), isLocal);
  return list;
}

void launch(GAppInfo* application, const Url& file) {
  // With the display's context the application may take the focus.
  const auto context = GRef<GAppLaunchContext>::adopt(
      G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gdk_display_get_default())));
  std::string address = file.absoluteString();
  GList addresses{address.data(), nullptr, nullptr};
  g_app_info_launch_uris_async(application, &addresses, context.get(), nullptr, launched, nullptr);
}

}  // namespace orivex::gtk

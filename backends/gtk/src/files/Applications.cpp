#include "Applications.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <fcntl.h>
#include <gdk/gdk.h>
#include <gio/gunixfdlist.h>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

using List = std::vector<GRef<GAppInfo>>;

void add(List& list, GRef<GAppInfo> application) {
  if (!application || !g_app_info_should_show(application.get())) return;
  // A program that takes only paths cannot reach the web.
  if (!g_app_info_supports_uris(application.get())) return;
  const bool known = std::any_of(list.begin(), list.end(), [&](const GRef<GAppInfo>& other) {
    return g_app_info_equal(other.get(), application.get()) != FALSE;
  });
  if (!known) list.push_back(std::move(application));
}

void addAll(List& list, const GListPtr& applications) {
  for (const GList* item = applications.get(); item; item = item->next) {
    add(list, GRef<GAppInfo>::adopt(G_APP_INFO(item->data)));
  }
}

// What opens these runs them.
bool isProgram(const std::string& type) {
  static constexpr const char* programs[] = {
      "application/x-executable",
      "application/x-sharedlib",
      "application/x-desktop",
      "application/x-shellscript",
      "application/x-java-archive",
      "application/java-archive",
      "application/x-java-jnlp-file",
      "application/x-ms-dos-executable",
      "application/x-msdownload",
      "application/vnd.microsoft.portable-executable",
      "application/x-msi",
      "application/x-ms-shortcut",
      "application/vnd.appimage",
      "application/x-iso9660-appimage",
      "application/vnd.flatpak",
      "application/vnd.flatpak.ref",
      "application/x-rpm",
      "application/vnd.debian.binary-package",
      "application/x-deb",
      "application/x-perl",
      "application/x-ruby",
      "application/javascript",
      "text/javascript",
      "text/x-python",
      "text/x-python3",
      "application/x-python-bytecode",
      "application/x-awk",
      "text/x-tcl",
  };
  return std::any_of(std::begin(programs), std::end(programs),
                     [&](const char* program) { return g_content_type_is_a(type.c_str(), program) != FALSE; });
}

// The default application first, then those made for the type, then those for a more general one.
void addForType(List& list, const std::string& type) {
  add(list, GRef<GAppInfo>::adopt(g_app_info_get_default_for_type(type.c_str(), TRUE)));
  addAll(list, GListPtr(g_app_info_get_recommended_for_type(type.c_str())));
  addAll(list, GListPtr(g_app_info_get_fallback_for_type(type.c_str())));
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

// The visitor is asked even when one application is the usual one.
GVariant* askOptions() {
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&options, "{sv}", "ask", g_variant_new_boolean(TRUE));
  return g_variant_builder_end(&options);
}

// Has `method` called once there is a session bus, which must not hold the main thread.
void callPortal(const char* method, GVariant* arguments, const GRef<GUnixFDList>& files = nullptr) {
  std::shared_ptr<GVariant> kept(g_variant_ref_sink(arguments), g_variant_unref);
  const auto answered = [](GObject* bus, GAsyncResult* result) {
    GError* raised = nullptr;
    const GVariantPtr handle(
        g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(bus), nullptr, result, &raised));
    const GErrorPtr error(raised);
    if (error) log::warning(std::string("Error opening a file through the portal: ") + error->message);
  };
  const auto connected = asyncCallback([=](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &raised));
    const GErrorPtr error(raised);
    if (!bus) return log::warning(std::string("No portal to open a file with: ") + error->message);
    const auto callback = asyncCallback(answered);
    g_dbus_connection_call_with_unix_fd_list(bus.get(), "org.freedesktop.portal.Desktop",
                                             "/org/freedesktop/portal/desktop", "org.freedesktop.portal.OpenURI",
                                             method, kept.get(), G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, -1,
                                             files.get(), nullptr, callback.function, callback.data);
  });
  g_bus_get(G_BUS_TYPE_SESSION, nullptr, connected.function, connected.data);
}

}  // namespace

List applicationsFor(const Url& file, const TypeRegistry& types) {
  const auto scheme = file.scheme();
  List list;
  if (scheme != "http" && scheme != "https") return list;
  if (const auto type = types.mimeType(extensionOf(file)); type && !isProgram(*type)) addForType(list, *type);
  add(list, GRef<GAppInfo>::adopt(g_app_info_get_default_for_uri_scheme(scheme.c_str())));
  return list;
}

void launch(GAppInfo* application, const Url& file) {
  // With the display's context the application may take the focus.
  const auto context = GRef<GAppLaunchContext>::adopt(
      G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gdk_display_get_default())));
  std::string address = file.absoluteString();
  GList addresses{address.data(), nullptr, nullptr};
  const auto launched = asyncCallback([](GObject* source, GAsyncResult* result) {
    GError* raised = nullptr;
    g_app_info_launch_uris_finish(G_APP_INFO(source), result, &raised);
    const GErrorPtr error(raised);
    if (error) log::warning(std::string("Error opening a file: ") + error->message);
  });
  g_app_info_launch_uris_async(application, &addresses, context.get(), nullptr, launched.function, launched.data);
}

void openThroughPortal(const Url& file) {
  const auto path = file.filePath();
  if (!path) {
    return callPortal("OpenURI", g_variant_new("(ss@a{sv})", "", file.absoluteString().c_str(), askOptions()));
  }
  const int descriptor = open(path->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return log::warning("Error opening a file: " + *path + " cannot be read");
  const auto files = GRef<GUnixFDList>::adopt(g_unix_fd_list_new_from_array(&descriptor, 1));  // owns it
  callPortal("OpenFile", g_variant_new("(sh@a{sv})", "", 0, askOptions()), files);
}

}  // namespace orivex::gtk

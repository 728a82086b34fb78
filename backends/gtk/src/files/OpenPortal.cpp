#include "OpenPortal.h"

#include <memory>
#include <string>
#include <utility>

#include <fcntl.h>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <unistd.h>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// The visitor is asked even when one application is the usual one.
GVariant* askOptions() {
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&options, "{sv}", "ask", g_variant_new_boolean(TRUE));
  return g_variant_builder_end(&options);
}

// Has `method` called once there is a session bus, which must not hold the main thread.
void call(const char* method, GVariant* arguments, const GRef<GUnixFDList>& files = nullptr) {
  std::shared_ptr<GVariant> kept(g_variant_ref_sink(arguments), g_variant_unref);
  const auto answered = [](GObject* bus, GAsyncResult* result) {
    GError* raised = nullptr;
    const GVariantPtr handle(
        g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(bus), nullptr, result, &raised));
    const GErrorPtr error(raised);
    if (error) log::print(std::string("Error opening a file through the portal: ") + error->message);
  };
  const auto connected = asyncCallback([=](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &raised));
    const GErrorPtr error(raised);
    if (!bus) return log::print(std::string("No portal to open a file with: ") + error->message);
    const auto callback = asyncCallback(answered);
    g_dbus_connection_call_with_unix_fd_list(bus.get(), "org.freedesktop.portal.Desktop",
                                             "/org/freedesktop/portal/desktop", "org.freedesktop.portal.OpenURI",
                                             method, kept.get(), G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, -1,
                                             files.get(), nullptr, callback.function, callback.data);
  });
  g_bus_get(G_BUS_TYPE_SESSION, nullptr, connected.function, connected.data);
}

}  // namespace

void openThroughPortal(const Url& file) {
  const auto path = file.filePath();
  if (!path) {
    return call("OpenURI", g_variant_new("(ss@a{sv})", "", file.absoluteString().c_str(), askOptions()));
  }
  const int descriptor = open(path->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return log::print("Error opening a file: " + *path + " cannot be read");
  const auto files = GRef<GUnixFDList>::adopt(g_unix_fd_list_new_from_array(&descriptor, 1));  // owns it
  call("OpenFile", g_variant_new("(sh@a{sv})", "", 0, askOptions()), files);
}

}  // namespace orivex::gtk

#include "OpenPortal.h"

#include <memory>
#include <string>
#include <utility>

#include <fcntl.h>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <unistd.h>

#include "../Contained.h"
#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

using GVariantPtr = std::unique_ptr<GVariant, FreeWith<g_variant_unref>>;

void answered(GObject* source, GAsyncResult* result, gpointer /*data*/) noexcept {
  contained([&] {
    GError* raised = nullptr;
    const GVariantPtr handle(
        g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(source), nullptr, result, &raised));
    const GErrorPtr error(raised);
    if (error) log::print(std::string("Error opening a file through the portal: ") + error->message);
  });
}

// The visitor is asked even when one application is the usual one.
GVariant* askOptions() {
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&options, "{sv}", "ask", g_variant_new_boolean(TRUE));
  return g_variant_builder_end(&options);
}

/// A call that waits for the session bus, which must not hold the main thread.
struct Call {
  const char* method;
  GVariantPtr arguments;
  GRef<GUnixFDList> files;

  static void begin(const char* method, GVariant* arguments, GRef<GUnixFDList> files = nullptr) {
    auto call = std::make_unique<Call>(Call{method, GVariantPtr(g_variant_ref_sink(arguments)), std::move(files)});
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, connected, call.release());
  }

 private:
  static void connected(GObject* /*source*/, GAsyncResult* result, gpointer data) noexcept {
    contained([&] {
      const std::unique_ptr<Call> call(static_cast<Call*>(data));
      GError* raised = nullptr;
      const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &raised));
      const GErrorPtr error(raised);
      if (!bus) return log::print(std::string("No portal to open a file with: ") + error->message);
      g_dbus_connection_call_with_unix_fd_list(
          bus.get(), "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
          "org.freedesktop.portal.OpenURI", call->method, call->arguments.get(), G_VARIANT_TYPE("(o)"),
          G_DBUS_CALL_FLAGS_NONE, -1, call->files.get(), nullptr, answered, nullptr);
    });
  }
};

}  // namespace

void openThroughPortal(const Url& file) {
  const auto path = file.filePath();
  if (!path) {
    return Call::begin("OpenURI", g_variant_new("(ss@a{sv})", "", file.absoluteString().c_str(), askOptions()));
  }
  const int descriptor = open(path->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return log::print("Error opening a file: " + *path + " cannot be read");
  auto files = GRef<GUnixFDList>::adopt(g_unix_fd_list_new_from_array(&descriptor, 1));  // owns it
  Call::begin("OpenFile", g_variant_new("(sh@a{sv})", "", 0, askOptions()), std::move(files));
}

}  // namespace orivex::gtk

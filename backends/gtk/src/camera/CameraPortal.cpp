#include "CameraPortal.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <gio/gunixfdlist.h>
#include <unistd.h>

#include "../Contained.h"
#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* cameraInterface = "org.freedesktop.portal.Camera";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr int timeout = 10'000;  // milliseconds for an answer that nobody is asked for

}  // namespace

CameraPortal::CameraPortal(Once<void(std::optional<CameraFailure>)> answered) : answered_(std::move(answered)) {
  const auto connected = asyncCallback(alive_.guard([this](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    bus_ = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &raised));
    const GErrorPtr error(raised);
    error ? fail(*error) : request();
  }));
  g_bus_get(G_BUS_TYPE_SESSION, nullptr, connected.function, connected.data);
}

CameraPortal::~CameraPortal() {
  if (response_ == 0) return;
  unsubscribe();
  g_dbus_connection_call(bus_.get(), portalName, requestPath_.c_str(), requestInterface, "Close", nullptr, nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, timeout, nullptr, nullptr, nullptr);
}

void CameraPortal::request() {
  static std::uint64_t ordinal = 0;
  const auto token = "orivexcamera" + std::to_string(++ordinal);
  // The path that the portal makes of the caller's bus name and its token.
  std::string sender = g_dbus_connection_get_unique_name(bus_.get()) + 1;
  std::replace(sender.begin(), sender.end(), '.', '_');
  requestPath_ = std::string(portalPath) + "/request/" + sender + "/" + token;
  subscribe();

  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token.c_str()));
  const auto called = asyncCallback(alive_.guard([this](GObject* bus, GAsyncResult* result) {
    GError* raised = nullptr;
    const GVariantPtr handle(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &raised));
    const GErrorPtr error(raised);
    if (error) fail(*error);
  }));
  g_dbus_connection_call(bus_.get(), portalName, portalPath, cameraInterface, "AccessCamera",
                         g_variant_new("(a{sv})", &options), G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, timeout,
                         nullptr, called.function, called.data);
}

void CameraPortal::subscribe() {
  response_ = g_dbus_connection_signal_subscribe(
      bus_.get(), portalName, requestInterface, "Response", requestPath_.c_str(), nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
         gpointer self) noexcept {
        guint32 code = 1;
        if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ua{sv})"))) {
          g_variant_get(arguments, "(ua{sv})", &code, nullptr);
        }
        contained([&] {
          static_cast<CameraPortal*>(self)->end(code == 0 ? std::nullopt : std::optional(CameraFailure::accessDenied));
        });
      },
      this, nullptr);
  // A portal that goes away in the middle of a question answers it no more.
  owner_ = g_dbus_connection_signal_subscribe(
      bus_.get(), "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", "/org/freedesktop/DBus",
      portalName, G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
         gpointer self) noexcept {
        const char* before = nullptr;
        g_variant_get(arguments, "(&s&s&s)", nullptr, &before, nullptr);
        if (*before != '\0') contained([&] { static_cast<CameraPortal*>(self)->end(CameraFailure::failed); });
      },
      this, nullptr);
}

void CameraPortal::unsubscribe() {
  for (auto* subscription : {&response_, &owner_}) {
    if (*subscription) g_dbus_connection_signal_unsubscribe(bus_.get(), std::exchange(*subscription, 0U));
  }
}

void CameraPortal::fail(const GError& error) {
  log::warning("No camera from the portal: " + std::string(error.message));
  end(CameraFailure::noCamera);
}

void CameraPortal::end(std::optional<CameraFailure> failure) {
  unsubscribe();
  std::move(answered_)(failure);
}

ElementOrError CameraPortal::makeSource() {
  GError* error = nullptr;
  const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
  if (!bus) return adoptError(error);
  GUnixFDList* list = nullptr;
  const GVariantPtr reply(g_dbus_connection_call_with_unix_fd_list_sync(
      bus.get(), portalName, portalPath, cameraInterface, "OpenPipeWireRemote", g_variant_new("(a{sv})", nullptr),
      G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NONE, timeout, nullptr, &list, nullptr, &error));
  const auto files = GRef<GUnixFDList>::adopt(list);
  if (!reply) return adoptError(error);
  gint32 index = 0;
  g_variant_get(reply.get(), "(h)", &index);
  const int remote = files ? g_unix_fd_list_get(files.get(), index, nullptr) : -1;
  if (remote < 0) return pipelineError("the portal has no connection to the camera");
  auto source = GRef<GstElement>::sink(gst_element_factory_make("pipewiresrc", nullptr));
  if (!source) {
    close(remote);
    return pipelineError("GStreamer lacks its source for PipeWire");
  }
  // The element takes a copy of the connection when it starts.
  g_object_set(source.get(), "fd", remote, nullptr);
  g_object_set_data_full(G_OBJECT(source.get()), "orivex-remote", GINT_TO_POINTER(remote),
                         [](gpointer owned) { close(GPOINTER_TO_INT(owned)); });
  return source;
}

}  // namespace orivex::gtk

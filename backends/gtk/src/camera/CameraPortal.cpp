#include "CameraPortal.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <unistd.h>

#include "../Contained.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* cameraInterface = "org.freedesktop.portal.Camera";
constexpr int patience = 10'000;  // milliseconds for an answer that nobody is asked for

std::string freshToken() {
  static std::uint64_t ordinal = 0;
  return "orivexcamera" + std::to_string(++ordinal);
}

// The path that the portal makes of the caller's bus name and its token.
std::string requestPath(GDBusConnection* bus, const std::string& token) {
  std::string sender = g_dbus_connection_get_unique_name(bus) + 1;
  std::replace(sender.begin(), sender.end(), '.', '_');
  return std::string(portalPath) + "/request/" + sender + "/" + token;
}

}  // namespace

/// One question on its way, kept alive by the callbacks that wait for its answer.
class CameraPortal::Request : public std::enable_shared_from_this<Request> {
 public:
  explicit Request(Once<void(std::optional<CameraFailure>)> answered) : answered_(std::move(answered)) {}

  void begin() {
    g_bus_get(
        G_BUS_TYPE_SESSION, nullptr,
        [](GObject*, GAsyncResult* result, gpointer data) noexcept {
          contained([&] {
            const auto self = take(data);
            GError* error = nullptr;
            self->bus_ = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &error));
            self->bus_ ? self->call() : self->fail(error);
          });
        },
        hold());
  }

  /// Whoever asked has gone. A portal that still shows its question takes it back.
  void close() {
    answered_ = nullptr;
    if (!bus_ || path_.empty()) return;
    g_dbus_connection_call(bus_.get(), portalName, path_.c_str(), "org.freedesktop.portal.Request", "Close", nullptr,
                           nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, nullptr, nullptr, nullptr);
    unsubscribe();
  }

 private:
  using Kept = std::shared_ptr<Request>;

  gpointer hold() { return std::make_unique<Kept>(shared_from_this()).release(); }
  static Kept take(gpointer data) { return *std::unique_ptr<Kept>(static_cast<Kept*>(data)); }
  static void drop(gpointer data) { take(data); }

  void call() {
    if (!answered_) return;
    const auto token = freshToken();
    path_ = requestPath(bus_.get(), token);
    subscribe();
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token.c_str()));
    g_dbus_connection_call(
        bus_.get(), portalName, portalPath, cameraInterface, "AccessCamera", g_variant_new("(a{sv})", &options),
        G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, patience, nullptr,
        [](GObject* source, GAsyncResult* result, gpointer data) noexcept {
          contained([&] {
            const auto self = take(data);
            GError* error = nullptr;
            const GVariantPtr handle(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
            if (!handle) self->fail(error);
          });
        },
        hold());
  }

  void subscribe() {
    response_ = g_dbus_connection_signal_subscribe(
        bus_.get(), portalName, "org.freedesktop.portal.Request", "Response", path_.c_str(), nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
           gpointer data) noexcept {
          guint32 code = 1;
          if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ua{sv})"))) {
            g_variant_get(arguments, "(ua{sv})", &code, nullptr);
          }
          contained([&] {
            (*static_cast<Kept*>(data))->end(code == 0 ? std::nullopt : std::optional(CameraFailure::accessDenied));
          });
        },
        hold(), drop);
    // A portal that goes away in the middle of a question answers it no more.
    owner_ = g_dbus_connection_signal_subscribe(
        bus_.get(), "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", "/org/freedesktop/DBus",
        portalName, G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
           gpointer data) noexcept {
          const char* before = nullptr;
          g_variant_get(arguments, "(&s&s&s)", nullptr, &before, nullptr);
          if (*before != '\0') contained([&] { (*static_cast<Kept*>(data))->end(CameraFailure::failed); });
        },
        hold(), drop);
  }

  void fail(GError* raised) {
    const GErrorPtr error(raised);
    log::print("No camera from the portal: " + std::string(error->message));
    end(CameraFailure::noCamera);
  }

  void end(std::optional<CameraFailure> failure) {
    const auto self = shared_from_this();
    unsubscribe();
    std::move(answered_)(failure);
  }

  void unsubscribe() {
    for (auto* subscription : {&response_, &owner_}) {
      if (*subscription) g_dbus_connection_signal_unsubscribe(bus_.get(), std::exchange(*subscription, 0U));
    }
  }

  Once<void(std::optional<CameraFailure>)> answered_;
  GRef<GDBusConnection> bus_;
  std::string path_;
  guint response_ = 0;
  guint owner_ = 0;
};

CameraPortal::CameraPortal(Once<void(std::optional<CameraFailure>)> answered)
    : request_(std::make_shared<Request>(std::move(answered))) {
  request_->begin();
}

CameraPortal::~CameraPortal() {
  request_->close();
}

ElementOrError CameraPortal::makeSource() {
  GError* error = nullptr;
  const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
  if (!bus) return adoptError(error);
  GUnixFDList* list = nullptr;
  const GVariantPtr reply(g_dbus_connection_call_with_unix_fd_list_sync(
      bus.get(), portalName, portalPath, cameraInterface, "OpenPipeWireRemote", g_variant_new("(a{sv})", nullptr),
      G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NONE, patience, nullptr, &list, nullptr, &error));
  const auto files = GRef<GUnixFDList>::adopt(list);
  if (!reply) return adoptError(error);
  gint32 index = 0;
  g_variant_get(reply.get(), "(h)", &index);
  const int remote = files ? g_unix_fd_list_get(files.get(), index, nullptr) : -1;
  if (remote < 0) return pipelineError("the portal gives no connection to the camera");
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

#include "MicrophonePortal.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include <unistd.h>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr char portalName[] = "org.freedesktop.portal.Desktop";
constexpr char portalPath[] = "/org/freedesktop/portal/desktop";

std::string freshToken() {
  static std::uint64_t ordinal = 0;
  return "orivex" + std::to_string(++ordinal);
}

// The path that the portal makes of the caller's bus name and its token.
std::string requestPath(GDBusConnection* bus, const std::string& token) {
  std::string sender = g_dbus_connection_get_unique_name(bus) + 1;
  std::replace(sender.begin(), sender.end(), '.', '_');
  return std::string(portalPath) + "/request/" + sender + "/" + token;
}

}  // namespace

/// One question on its way, kept alive by the callbacks that wait for its answer.
class MicrophonePortal::Question : public std::enable_shared_from_this<Question> {
 public:
  explicit Question(Once<void(bool)> answer) : answer_(std::move(answer)) {}

  void begin() {
    g_bus_get(
        G_BUS_TYPE_SESSION, nullptr,
        [](GObject*, GAsyncResult* result, gpointer data) noexcept {
          const auto self = take(data);
          GError* error = nullptr;
          self->bus_ = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, &error));
          if (self->bus_) {
            self->call();
          } else {
            self->fail(error);
          }
        },
        hold());
  }

 private:
  using Kept = std::shared_ptr<Question>;

  gpointer hold() { return std::make_unique<Kept>(shared_from_this()).release(); }
  static Kept take(gpointer data) { return *std::unique_ptr<Kept>(static_cast<Kept*>(data)); }
  static Question& at(gpointer data) { return **static_cast<Kept*>(data); }
  static void drop(gpointer data) { take(data); }

  void call() {
    const auto token = freshToken();
    subscribe(requestPath(bus_.get(), token));
    const char* const devices[] = {"microphone", nullptr};
    GVariantBuilder options;
    g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&options, "{sv}", "handle_token", g_variant_new_string(token.c_str()));
    g_dbus_connection_call(
        bus_.get(), portalName, portalPath, "org.freedesktop.portal.Device", "AccessDevice",
        g_variant_new("(u^asa{sv})", static_cast<guint32>(::getpid()), devices, &options), G_VARIANT_TYPE("(o)"),
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        [](GObject* source, GAsyncResult* result, gpointer data) noexcept {
          const auto self = take(data);
          GError* error = nullptr;
          GVariant* const handle = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
          if (handle) {
            g_variant_unref(handle);
          } else {
            self->fail(error);
          }
        },
        hold());
  }

  void subscribe(const std::string& path) {
    response_ = g_dbus_connection_signal_subscribe(
        bus_.get(), portalName, "org.freedesktop.portal.Request", "Response", path.c_str(), nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
           gpointer data) noexcept {
          guint32 code = 1;
          GVariant* results = nullptr;
          g_variant_get(arguments, "(u@a{sv})", &code, &results);
          g_variant_unref(results);
          at(data).end(code == 0);
        },
        hold(), drop);
    // A portal that goes away in the middle of a question answers it no more.
    owner_ = g_dbus_connection_signal_subscribe(
        bus_.get(), "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", "/org/freedesktop/DBus",
        portalName, G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* arguments,
           gpointer data) noexcept {
          const char* now = nullptr;
          g_variant_get(arguments, "(&s&s&s)", nullptr, nullptr, &now);
          if (*now == '\0') at(data).end(false);
        },
        hold(), drop);
  }

  void fail(GError* raised) {
    const GErrorPtr error(raised);
    log::print("No answer about the microphone: " + std::string(error->message));
    end(false);
  }

  void end(bool granted) {
    const auto self = shared_from_this();
    for (auto* subscription : {&response_, &owner_}) {
      if (*subscription) g_dbus_connection_signal_unsubscribe(bus_.get(), std::exchange(*subscription, 0U));
    }
    std::move(answer_)(granted);
  }

  Once<void(bool)> answer_;
  GRef<GDBusConnection> bus_;
  guint response_ = 0;
  guint owner_ = 0;
};

void MicrophonePortal::ask(Once<void(bool)> answer) {
  std::make_shared<Question>(std::move(answer))->begin();
}

}  // namespace orivex::gtk

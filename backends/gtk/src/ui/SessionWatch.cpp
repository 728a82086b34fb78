#include "SessionWatch.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

namespace {

constexpr const char* login = "org.freedesktop.login1";

bool isCancelled(const GErrorPtr& error) {
  return g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED);
}

bool boolIn(GVariant* parameters) {
  if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) return false;
  gboolean value = FALSE;
  g_variant_get(parameters, "(b)", &value);
  return value != FALSE;
}

}  // namespace

SessionWatch::SessionWatch(std::function<void()> changed)
    : changed_(std::move(changed)), cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())) {
  makeProxy(G_BUS_TYPE_SYSTEM, login, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
            &SessionWatch::useManager);
  makeProxy(G_BUS_TYPE_SESSION, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
            "org.freedesktop.ScreenSaver", &SessionWatch::useScreenSaver);
  makeProxy(G_BUS_TYPE_SESSION, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver",
            &SessionWatch::useScreenSaver);
}

SessionWatch::~SessionWatch() {
  g_cancellable_cancel(cancellable_.get());
}

void SessionWatch::makeProxy(GBusType bus, const char* name, const char* path, const char* interface,
                             void (SessionWatch::*use)(GRef<GDBusProxy>)) {
  const auto made = asyncCallback([this, use](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    auto proxy = GRef<GDBusProxy>::adopt(g_dbus_proxy_new_for_bus_finish(result, &raised));
    const GErrorPtr error(raised);
    if (isCancelled(error)) return;  // this has gone
    if (!proxy) return tellOnce(error->message);
    (this->*use)(std::move(proxy));
  });
  // Nobody is started to be asked whether he is there.
  g_dbus_proxy_new_for_bus(bus, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, nullptr, name, path, interface,
                           cancellable_.get(), made.function, made.data);
}

void SessionWatch::useManager(GRef<GDBusProxy> manager) {
  manager_ = std::move(manager);
  // GLib would end the process with the system's bus.
  g_dbus_connection_set_exit_on_close(g_dbus_proxy_get_connection(manager_.get()), FALSE);
  signals_.add(manager_.get(), "g-signal", [this](const char* /*sender*/, const char* name, GVariant* parameters) {
    if (std::string_view(name) != "PrepareForSleep") return;
    sleeping_ = boolIn(parameters);
    settle();
  });
  // "auto": the session of this process or, for one started by the user's service manager, the one on the display.
  const auto found = asyncCallback([this](GObject* source, GAsyncResult* result) {
    GError* raised = nullptr;
    const GVariantPtr reply(g_dbus_proxy_call_finish(G_DBUS_PROXY(source), result, &raised));
    const GErrorPtr error(raised);
    if (isCancelled(error)) return;
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(o)"))) {
      return tellOnce(error ? error->message : "the login manager answers something else");
    }
    const char* path = nullptr;
    g_variant_get(reply.get(), "(&o)", &path);
    makeProxy(G_BUS_TYPE_SYSTEM, login, path, "org.freedesktop.login1.Session", &SessionWatch::useSession);
  });
  g_dbus_proxy_call(manager_.get(), "GetSession", g_variant_new("(s)", "auto"), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
                    cancellable_.get(), found.function, found.data);
}

void SessionWatch::useSession(GRef<GDBusProxy> session) {
  session_ = std::move(session);
  signals_.add(session_.get(), "g-properties-changed", [this] { readLockedHint(); });
  readLockedHint();
}

void SessionWatch::useScreenSaver(GRef<GDBusProxy> saver) {
  auto* const proxy = saver.get();
  signals_.add(proxy, "g-signal", [this, proxy](const char* /*sender*/, const char* name, GVariant* parameters) {
    if (std::string_view(name) == "ActiveChanged") coverBy(proxy, boolIn(parameters));
  });
  // A screen saver that has ended covers nothing.
  signals_.add(proxy, "notify::g-name-owner", [this, proxy] {
    const GCharPtr owner(g_dbus_proxy_get_name_owner(proxy));
    if (!owner) coverBy(proxy, false);
  });
  screenSavers_.push_back(std::move(saver));
}

void SessionWatch::readLockedHint() {
  const GVariantPtr hint(g_dbus_proxy_get_cached_property(session_.get(), "LockedHint"));
  locked_ = hint && g_variant_is_of_type(hint.get(), G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(hint.get());
  settle();
}

void SessionWatch::coverBy(GDBusProxy* saver, bool covered) {
  std::erase(covering_, saver);
  if (covered) covering_.push_back(saver);
  settle();
}

void SessionWatch::settle() {
  const bool away = sleeping_ || locked_ || !covering_.empty();
  if (std::exchange(away_, away) != away) changed_();
}

void SessionWatch::tellOnce(const std::string& failure) {
  if (!std::exchange(told_, true)) log::print("A locked session or a sleeping machine is not noticed: " + failure);
}

}  // namespace orivex::gtk

#include "SessionWatch.h"

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

}  // namespace

SessionWatch::SessionWatch(std::function<void()> changed)
    : changed_(std::move(changed)), cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())) {
  makeProxy(G_BUS_TYPE_SYSTEM, login, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
            &SessionWatch::managerMade);
  makeProxy(G_BUS_TYPE_SESSION, "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
            "org.freedesktop.ScreenSaver", &SessionWatch::screenSaverMade);
  makeProxy(G_BUS_TYPE_SESSION, "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver",
            &SessionWatch::screenSaverMade);
}

SessionWatch::~SessionWatch() {
  g_cancellable_cancel(cancellable_.get());
}

void SessionWatch::makeProxy(GBusType bus, const char* name, const char* path, const char* interface,
                             void (SessionWatch::*made)(GDBusProxy*)) {
  const auto callback = asyncCallback([this, made](GObject* /*source*/, GAsyncResult* result) {
    GError* raised = nullptr;
    auto proxy = GRef<GDBusProxy>::adopt(g_dbus_proxy_new_for_bus_finish(result, &raised));
    const GErrorPtr error(raised);
    if (isCancelled(error)) return;  // this has gone
    if (!proxy) return logOnce(error->message);
    (this->*made)(proxies_.emplace_back(std::move(proxy)).get());
  });
  // A service that does not run is not started to be asked.
  g_dbus_proxy_new_for_bus(bus, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, nullptr, name, path, interface,
                           cancellable_.get(), callback.function, callback.data);
}

void SessionWatch::managerMade(GDBusProxy* manager) {
  // GLib would end the process with the system's bus.
  g_dbus_connection_set_exit_on_close(g_dbus_proxy_get_connection(manager), FALSE);
  followSignal(manager, "PrepareForSleep");
  // "auto": the session of this process or, for one started by the user's service manager, the one on the display.
  const auto found = asyncCallback([this](GObject* source, GAsyncResult* result) {
    GError* raised = nullptr;
    const GVariantPtr reply(g_dbus_proxy_call_finish(G_DBUS_PROXY(source), result, &raised));
    const GErrorPtr error(raised);
    if (isCancelled(error)) return;
    if (!reply || !g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(o)"))) {
      return logOnce(error ? error->message : "the login manager answers something else");
    }
    const char* path = nullptr;
    g_variant_get(reply.get(), "(&o)", &path);
    makeProxy(G_BUS_TYPE_SYSTEM, login, path, "org.freedesktop.login1.Session", &SessionWatch::sessionMade);
  });
  g_dbus_proxy_call(manager, "GetSession", g_variant_new("(s)", "auto"), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
                    cancellable_.get(), found.function, found.data);
}

void SessionWatch::sessionMade(GDBusProxy* session) {
  const auto readLockedHint = [this, session] {
    const GVariantPtr hint(g_dbus_proxy_get_cached_property(session, "LockedHint"));
    setAway(session,
            hint && g_variant_is_of_type(hint.get(), G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(hint.get()));
  };
  signals_.add(session, "g-properties-changed", readLockedHint);
  readLockedHint();
}

void SessionWatch::screenSaverMade(GDBusProxy* saver) {
  followSignal(saver, "ActiveChanged");
  // A screen saver that has ended covers nothing.
  signals_.add(saver, "notify::g-name-owner", [this, saver] {
    const GCharPtr owner(g_dbus_proxy_get_name_owner(saver));
    if (!owner) setAway(saver, false);
  });
}

// The signal says whether the visitor is away.
void SessionWatch::followSignal(GDBusProxy* proxy, const std::string& signal) {
  const auto received = [=, this](const char* /*sender*/, const char* name, GVariant* parameters) {
    if (name != signal) return;
    gboolean away = FALSE;
    if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) g_variant_get(parameters, "(b)", &away);
    setAway(proxy, away != FALSE);
  };
  signals_.add(proxy, "g-signal", received);
}

void SessionWatch::setAway(GDBusProxy* cause, bool away) {
  const bool was = isAway();
  if (away) {
    causes_.insert(cause);
  } else {
    causes_.erase(cause);
  }
  if (isAway() != was) changed_();
}

void SessionWatch::logOnce(const std::string& failure) {
  if (!std::exchange(logged_, true))
    log::print("A locked session or a sleeping machine is not noticed: " + failure, log::Level::info);
}

}  // namespace orivex::gtk

#pragma once

#include <string>

#include "support/BusService.h"

namespace orivex::gtk {

/// Stands in for the login manager and for a screen saver on the bus of the tests.
class LoginService {
 public:
  /// Owns the names on the bus at `address`.
  explicit LoginService(const std::string& address) : service_(address.c_str()) {
    service_.add(managerPath,
                 "<interface name='org.freedesktop.login1.Manager'><method name='GetSession'>"
                 "<arg type='s' direction='in'/><arg type='o' direction='out'/></method></interface>",
                 [this](auto&, GVariant* arguments) {
                   const char* id = nullptr;
                   g_variant_get(arguments, "(&s)", &id);
                   EXPECT_STREQ(id, "auto");
                   ++sessionRequests_;
                   return g_variant_new("(o)", sessionPath);
                 });
    service_.add(sessionPath,
                 "<interface name='org.freedesktop.login1.Session'><property name='LockedHint' type='b' access='read'/>"
                 "</interface>",
                 {}, [this] { return g_variant_new_boolean(locked_); });
    for (const char* name : {"org.freedesktop.login1", "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) {
      service_.own(name);
    }
  }

  void setLocked(bool locked) {
    locked_ = locked;
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&changed, "{sv}", "LockedHint", g_variant_new_boolean(locked));
    service_.emit(sessionPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                  g_variant_new("(sa{sv}as)", "org.freedesktop.login1.Session", &changed, nullptr));
  }
  void prepareForSleep(bool starts) {
    service_.emit(managerPath, "org.freedesktop.login1.Manager", "PrepareForSleep", g_variant_new("(b)", starts));
  }
  void setScreenSaverActive(const char* name, const char* path, bool active) {
    service_.emit(path, name, "ActiveChanged", g_variant_new("(b)", active));
  }
  void release(const char* name) { service_.release(name); }

  /// How often the session of the caller was asked for.
  int sessionRequests() const { return sessionRequests_; }

 private:
  static constexpr const char* sessionPath = "/org/freedesktop/login1/session/_37";
  static constexpr const char* managerPath = "/org/freedesktop/login1";

  int sessionRequests_ = 0;
  bool locked_ = false;
  BusService service_;
};

}  // namespace orivex::gtk

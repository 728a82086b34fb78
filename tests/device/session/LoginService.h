#pragma once

#include <string>

#include <gio/gio.h>

#include "glib/GRef.h"

namespace orivex::gtk {

/// Stands in for the login manager and for a screen saver on the bus of the tests, on a connection of its own.
class LoginService {
 public:
  /// Owns the names on the bus at `address`.
  explicit LoginService(const std::string& address);
  LoginService(const LoginService&) = delete;
  LoginService& operator=(const LoginService&) = delete;
  ~LoginService();

  void setLocked(bool locked);
  void prepareForSleep(bool starts);
  void setScreenSaverActive(const std::string& name, const std::string& path, bool active);
  void release(const std::string& name);

  /// How often the session of the caller was asked for.
  int sessionRequests() const { return sessionRequests_; }
  bool isLocked() const { return locked_; }

 private:
  void own(const std::string& name);
  void emit(const std::string& path, const std::string& interface, const char* signal, GVariant* parameters);
  static GVariant* lockedHint(GDBusConnection*, const char*, const char*, const char*, const char*, GError**,
                              gpointer data) noexcept;
  static void getSession(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
                         GDBusMethodInvocation* invocation, gpointer data) noexcept;

  GRef<GDBusConnection> connection_;
  int sessionRequests_ = 0;
  bool locked_ = false;
};

}  // namespace orivex::gtk

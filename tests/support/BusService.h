#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gio/gio.h>
#include <gtest/gtest.h>

#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {

/// A service that tests play on the bus at an address, on a connection of its own.
class BusService {
 public:
  /// Answers a call; null refuses it.
  using Method = std::function<GVariant*(const std::string& sender, GVariant* arguments)>;
  using Property = std::function<GVariant*()>;

  explicit BusService(const char* address)
      : connection_(GRef<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
            address,
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr))) {}
  BusService(const BusService&) = delete;
  BusService& operator=(const BusService&) = delete;
  ~BusService() {
    // A call that has come already still waits for its turn in the main loop.
    for (const guint id : registrations_) g_dbus_connection_unregister_object(connection_.get(), id);
    g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
  }

  /// Adds an object with one interface, whose members all do the same.
  void add(const char* path, const std::string& interface, Method method, Property property = {}) {
    const std::unique_ptr<GDBusNodeInfo, FreeWith<g_dbus_node_info_unref>> node(
        g_dbus_node_info_new_for_xml(("<node>" + interface + "</node>").c_str(), nullptr));
    static const GDBusInterfaceVTable table{called, asked, nullptr, {}};
    objects_.emplace_back(std::move(method), std::move(property));
    registrations_.push_back(g_dbus_connection_register_object(connection_.get(), path, node->interfaces[0], &table,
                                                               &objects_.back(), nullptr, nullptr));
    EXPECT_NE(registrations_.back(), 0U);
  }

  /// Takes the name from a service of the machine, which may have been started for somebody else.
  void own(const char* name) {
    constexpr guint32 replaceExisting = 2;
    callBus("RequestName", g_variant_new("(su)", name, replaceExisting));
  }
  void release(const char* name) { callBus("ReleaseName", g_variant_new("(s)", name)); }
  void emit(const char* path, const char* interface, const char* signal, GVariant* parameters) {
    EXPECT_TRUE(
        g_dbus_connection_emit_signal(connection_.get(), nullptr, path, interface, signal, parameters, nullptr));
  }

 private:
  using Object = std::pair<Method, Property>;

  static void called(GDBusConnection*, const char* sender, const char*, const char*, const char*, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer object) {
    GVariant* const answer = static_cast<Object*>(object)->first(sender, arguments);
    if (answer) return g_dbus_method_invocation_return_value(invocation, answer);
    g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED, "not for you");
  }
  static GVariant* asked(GDBusConnection*, const char*, const char*, const char*, const char*, GError**,
                         gpointer object) {
    return static_cast<Object*>(object)->second();
  }
  void callBus(const char* method, GVariant* parameters) {
    const std::unique_ptr<GVariant, FreeWith<g_variant_unref>> reply(g_dbus_connection_call_sync(
        connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, parameters,
        nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    EXPECT_TRUE(reply) << method;
  }

  std::list<Object> objects_;
  std::vector<guint> registrations_;
  GRef<GDBusConnection> connection_;
};

}  // namespace orivex::gtk

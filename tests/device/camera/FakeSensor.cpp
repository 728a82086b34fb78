#include "FakeSensor.h"

#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr const char* interfaceText = R"xml(<node><interface name="net.hadess.SensorProxy">
  <method name="ClaimAccelerometer"/><method name="ReleaseAccelerometer"/>
  <property name="AccelerometerOrientation" type="s" access="read"/>
</interface></node>)xml";

using NodePtr = std::unique_ptr<GDBusNodeInfo, FreeWith<g_dbus_node_info_unref>>;

}  // namespace

void FakeSensor::call(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant*,
                      GDBusMethodInvocation* invocation, gpointer self) {
  if (g_str_equal(method, "ClaimAccelerometer")) static_cast<FakeSensor*>(self)->claimed_ = true;
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

GVariant* FakeSensor::property(GDBusConnection*, const char*, const char*, const char*, const char*, GError**,
                               gpointer self) {
  return g_variant_new_string(static_cast<const FakeSensor*>(self)->orientation_.c_str());
}

void useFakeSystemBus() {
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", g_getenv("DBUS_SESSION_BUS_ADDRESS"), TRUE);
}

FakeSensor::FakeSensor(std::string orientation) : orientation_(std::move(orientation)) {
  connection_ = GRef<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      g_getenv("DBUS_SYSTEM_BUS_ADDRESS"),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  EXPECT_TRUE(connection_);
  static const GDBusInterfaceVTable table{call, property, nullptr, {}};
  const NodePtr node(g_dbus_node_info_new_for_xml(interfaceText, nullptr));
  object_ = g_dbus_connection_register_object(connection_.get(), "/net/hadess/SensorProxy", node->interfaces[0], &table,
                                              this, nullptr, nullptr);
  const std::unique_ptr<GVariant, FreeWith<g_variant_unref>> reply(g_dbus_connection_call_sync(
      connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
      g_variant_new("(su)", "net.hadess.SensorProxy", 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  EXPECT_TRUE(reply);
}

FakeSensor::~FakeSensor() {
  g_dbus_connection_unregister_object(connection_.get(), object_);
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

}  // namespace orivex::gtk

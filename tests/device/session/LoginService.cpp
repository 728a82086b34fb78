#include "LoginService.h"

#include <gtest/gtest.h>

#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr const char* sessionPath = "/org/freedesktop/login1/session/_37";
constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";

constexpr const char* description = R"(<node>
  <interface name='org.freedesktop.login1.Manager'>
    <method name='GetSession'><arg type='s' direction='in'/><arg type='o' direction='out'/></method>
    <signal name='PrepareForSleep'><arg type='b'/></signal>
  </interface>
  <interface name='org.freedesktop.login1.Session'><property name='LockedHint' type='b' access='read'/></interface>
</node>)";

using GVariantPtr = std::unique_ptr<GVariant, FreeWith<g_variant_unref>>;
using NodePtr = std::unique_ptr<GDBusNodeInfo, FreeWith<g_dbus_node_info_unref>>;

}  // namespace

LoginService::LoginService(const std::string& address)
    : connection_(GRef<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
          address.c_str(),
          static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
          nullptr, nullptr, nullptr))) {
  const NodePtr node(g_dbus_node_info_new_for_xml(description, nullptr));
  const GDBusInterfaceVTable manager{getSession, nullptr, nullptr, {}};
  const GDBusInterfaceVTable session{nullptr, lockedHint, nullptr, {}};
  EXPECT_NE(g_dbus_connection_register_object(connection_.get(), managerPath, node->interfaces[0], &manager, this,
                                              nullptr, nullptr),
            0U);
  EXPECT_NE(g_dbus_connection_register_object(connection_.get(), sessionPath, node->interfaces[1], &session, this,
                                              nullptr, nullptr),
            0U);
  for (const char* name : {"org.freedesktop.login1", "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"}) own(name);
}

LoginService::~LoginService() {
  g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
}

GVariant* LoginService::lockedHint(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                                   const char* /*interface*/, const char* /*property*/, GError** /*error*/,
                                   gpointer data) noexcept {
  return g_variant_new_boolean(static_cast<LoginService*>(data)->locked_);
}

void LoginService::getSession(GDBusConnection* /*connection*/, const char* /*sender*/, const char* /*path*/,
                              const char* /*interface*/, const char* /*method*/, GVariant* parameters,
                              GDBusMethodInvocation* invocation, gpointer data) noexcept {
  const char* id = nullptr;
  g_variant_get(parameters, "(&s)", &id);
  EXPECT_STREQ(id, "auto");
  ++static_cast<LoginService*>(data)->sessionRequests_;
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", sessionPath));
}

void LoginService::own(const std::string& name) {
  const GVariantPtr reply(g_dbus_connection_call_sync(
      connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
      g_variant_new("(su)", name.c_str(), 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  EXPECT_TRUE(reply) << name;
}

void LoginService::release(const std::string& name) {
  const GVariantPtr reply(g_dbus_connection_call_sync(
      connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReleaseName",
      g_variant_new("(s)", name.c_str()), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  EXPECT_TRUE(reply) << name;
}

void LoginService::emit(const std::string& path, const std::string& interface, const char* signal,
                        GVariant* parameters) {
  EXPECT_TRUE(g_dbus_connection_emit_signal(connection_.get(), nullptr, path.c_str(), interface.c_str(), signal,
                                            parameters, nullptr));
}

void LoginService::setLocked(bool locked) {
  locked_ = locked;
  GVariantBuilder changed;
  g_variant_builder_init(&changed, G_VARIANT_TYPE("a{sv}"));
  g_variant_builder_add(&changed, "{sv}", "LockedHint", g_variant_new_boolean(locked));
  emit(sessionPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
       g_variant_new("(sa{sv}as)", sessionInterface, &changed, nullptr));
}

void LoginService::prepareForSleep(bool starts) {
  emit(managerPath, "org.freedesktop.login1.Manager", "PrepareForSleep", g_variant_new("(b)", starts));
}

void LoginService::setScreenSaverActive(const std::string& name, const std::string& path, bool active) {
  emit(path, name, "ActiveChanged", g_variant_new("(b)", active));
}

}  // namespace orivex::gtk

#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "../GtkFixture.h"
#include "SharedLog.h"
#include "audio/MicrophonePortal.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 10;

constexpr char interfaceXml[] = R"(<node><interface name="org.freedesktop.portal.Device"><method name="AccessDevice">
<arg type="u" direction="in"/><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/>
<arg type="o" direction="out"/></method></interface></node>)";

/// A portal on a connection of its own, which notes what it is asked and answers when a test says so.
class FakePortal {
 public:
  FakePortal() {
    const GCharPtr address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    bus_ = GRef<GDBusConnection>::adopt(
        g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr, nullptr, nullptr));
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interfaceXml, nullptr);
    static const GDBusInterfaceVTable table{called, nullptr, nullptr, {}};
    g_dbus_connection_register_object(bus_.get(), "/org/freedesktop/portal/desktop", node->interfaces[0], &table, this,
                                      nullptr, nullptr);
    g_dbus_node_info_unref(node);
    owner_ = g_bus_own_name_on_connection(
        bus_.get(), "org.freedesktop.portal.Desktop", G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer self) { static_cast<FakePortal*>(self)->owned_ = true; }, nullptr,
        this, nullptr);
    EXPECT_TRUE(wait([&] { return owned_; }, patience));
  }
  FakePortal(const FakePortal&) = delete;
  FakePortal& operator=(const FakePortal&) = delete;
  ~FakePortal() {
    g_bus_unown_name(owner_);
    g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
  }

  void respond(guint32 code) {
    ASSERT_TRUE(wait([&] { return !request.empty(); }, patience));
    g_dbus_connection_emit_signal(bus_.get(), nullptr, request.c_str(), "org.freedesktop.portal.Request", "Response",
                                  g_variant_new("(ua{sv})", code, nullptr), nullptr);
  }

  bool refuses = false;
  std::string request;
  std::string device;
  guint32 process = 0;

 private:
  static void called(GDBusConnection*, const char* sender, const char*, const char*, const char*, GVariant* arguments,
                     GDBusMethodInvocation* invocation, gpointer data) {
    auto& self = *static_cast<FakePortal*>(data);
    if (self.refuses) {
      return g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED, "not for you");
    }
    const char** devices = nullptr;
    GVariant* options = nullptr;
    const char* token = nullptr;
    g_variant_get(arguments, "(u^a&s@a{sv})", &self.process, &devices, &options);
    g_variant_lookup(options, "handle_token", "&s", &token);
    self.device = devices[0];
    std::string name = sender + 1;
    for (auto& letter : name) letter = letter == '.' ? '_' : letter;
    self.request = "/org/freedesktop/portal/desktop/request/" + name + "/" + token;
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", self.request.c_str()));
    g_variant_unref(options);
    g_free(devices);
  }

  GRef<GDBusConnection> bus_;
  guint owner_ = 0;
  bool owned_ = false;
};

class MicrophonePortalTest : public ::testing::Test {
 protected:
  void ask() {
    answer_.reset();
    MicrophonePortal::ask([this](bool granted) {
      EXPECT_FALSE(answer_.has_value());
      answer_ = granted;
    });
    EXPECT_FALSE(answer_.has_value()) << "answered inside the call";
  }
  std::optional<bool> answer() {
    wait([&] { return answer_.has_value(); }, patience);
    pass(0.05);
    return answer_;
  }

  SharedLog log_;
  std::optional<bool> answer_;
};

TEST_F(MicrophonePortalTest, PassesItsAnswerOn) {
  FakePortal portal;
  const std::pair<guint32, bool> cases[] = {{0, true}, {1, false}, {2, false}, {0, true}};
  for (const auto& [code, granted] : cases) {
    portal.request.clear();
    ask();
    portal.respond(code);
    EXPECT_EQ(answer(), granted) << code;
  }
  EXPECT_EQ(portal.device, "microphone");
  EXPECT_EQ(portal.process, static_cast<guint32>(::getpid()));
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(MicrophonePortalTest, IsARefusalWhenThereIsNoneOrItGoesAway) {
  ask();
  EXPECT_EQ(answer(), false);
  EXPECT_EQ(log_.lines().size(), 1U);
  {
    FakePortal portal;
    portal.refuses = true;
    ask();
    EXPECT_EQ(answer(), false);
    EXPECT_EQ(log_.lines().size(), 2U);
    portal.refuses = false;
    ask();
    ASSERT_TRUE(wait([&] { return !portal.request.empty(); }, patience));
    pass(0.05);
  }
  EXPECT_EQ(answer(), false);
}

}  // namespace
}  // namespace orivex::gtk

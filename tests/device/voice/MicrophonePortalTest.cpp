#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "../GtkFixture.h"
#include "LogLines.h"
#include "audio/MicrophonePortal.h"
#include "device/BusService.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 10;

/// A portal that notes what it is asked and answers when a test says so.
class FakePortal {
 public:
  FakePortal() {
    service_.add("/org/freedesktop/portal/desktop",
                 "<interface name='org.freedesktop.portal.Device'><method name='AccessDevice'>"
                 "<arg type='u' direction='in'/><arg type='as' direction='in'/><arg type='a{sv}' direction='in'/>"
                 "<arg type='o' direction='out'/></method></interface>",
                 [this](const std::string& sender, GVariant* arguments) { return called(sender, arguments); });
    service_.own("org.freedesktop.portal.Desktop");
  }

  void respond(guint32 code) {
    ASSERT_TRUE(wait([&] { return !request.empty(); }, patience));
    service_.emit(request.c_str(), "org.freedesktop.portal.Request", "Response",
                  g_variant_new("(ua{sv})", code, nullptr));
  }

  bool refuses = false;
  std::string request;
  std::string device;
  guint32 process = 0;

 private:
  GVariant* called(const std::string& sender, GVariant* arguments) {
    if (refuses) return nullptr;
    const char** devices = nullptr;
    GVariant* options = nullptr;
    const char* token = nullptr;
    g_variant_get(arguments, "(u^a&s@a{sv})", &process, &devices, &options);
    g_variant_lookup(options, "handle_token", "&s", &token);
    device = devices[0];
    std::string name = sender.substr(1);
    for (auto& letter : name) letter = letter == '.' ? '_' : letter;
    request = "/org/freedesktop/portal/desktop/request/" + name + "/" + token;
    g_variant_unref(options);
    g_free(devices);
    return g_variant_new("(o)", request.c_str());
  }

  BusService service_{GCharPtr(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)).get()};
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

  LogLines log_;
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
  EXPECT_TRUE(log_.get().empty());
}

TEST_F(MicrophonePortalTest, IsARefusalWhenThereIsNoneOrItGoesAway) {
  ask();
  EXPECT_EQ(answer(), false);
  EXPECT_EQ(log_.get().size(), 1U);
  {
    FakePortal portal;
    portal.refuses = true;
    ask();
    EXPECT_EQ(answer(), false);
    EXPECT_EQ(log_.get().size(), 2U);
    portal.refuses = false;
    ask();
    ASSERT_TRUE(wait([&] { return !portal.request.empty(); }, patience));
    pass(0.05);
  }
  EXPECT_EQ(answer(), false);
}

}  // namespace
}  // namespace orivex::gtk

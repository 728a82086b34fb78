#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "camera/CameraPortal.h"
#include "support/BusService.h"
#include "support/CameraFixture.h"
#include "support/MainLoop.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 10;

/// A portal that notes what it is asked and answers when a test says so.
class FakePortal {
 public:
  FakePortal() {
    service_.add("/org/freedesktop/portal/desktop",
                 "<interface name='org.freedesktop.portal.Camera'><method name='AccessCamera'>"
                 "<arg type='a{sv}' direction='in'/><arg type='o' direction='out'/></method></interface>",
                 [this](const std::string& sender, GVariant* arguments) { return called(sender, arguments); });
    service_.own("org.freedesktop.portal.Desktop");
  }

  bool isAsked() {
    return wait([this] { return !request.empty(); }, patience);
  }
  void respond(guint32 code) {
    service_.emit(request.c_str(), "org.freedesktop.portal.Request", "Response",
                  g_variant_new("(ua{sv})", code, nullptr));
  }

  bool refuses = false;
  bool isClosed = false;
  std::string request;

 private:
  GVariant* called(std::string sender, GVariant* arguments) {
    if (refuses) return nullptr;
    const std::unique_ptr<GVariant, FreeWith<g_variant_unref>> options(g_variant_get_child_value(arguments, 0));
    const char* token = nullptr;
    g_variant_lookup(options.get(), "handle_token", "&s", &token);
    for (auto& letter : sender) letter = letter == '.' ? '_' : letter;
    request = "/org/freedesktop/portal/desktop/request/" + sender.substr(1) + "/" + token;
    service_.add(request.c_str(), "<interface name='org.freedesktop.portal.Request'><method name='Close'/></interface>",
                 [this](const std::string&, GVariant*) {
                   isClosed = true;
                   return g_variant_new("()");
                 });
    return g_variant_new("(o)", request.c_str());
  }

  BusService service_{GCharPtr(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)).get()};
};

class CameraPortalTest : public ::testing::Test {
 protected:
  void ask() {
    portal_ =
        std::make_unique<CameraPortal>([this](std::optional<CameraFailure> failure) { answers_.push_back(failure); });
    EXPECT_TRUE(answers_.empty()) << "answered inside the call";
  }
  std::optional<CameraFailure> answer() {
    EXPECT_TRUE(wait([&] { return !answers_.empty(); }, patience));
    pass(0.05);
    EXPECT_EQ(answers_.size(), 1U);
    return std::exchange(answers_, {}).at(0);
  }

  std::vector<std::optional<CameraFailure>> answers_;
  std::unique_ptr<CameraPortal> portal_;
};

TEST_F(CameraPortalTest, ItsAnswerDecides) {
  FakePortal portal;
  const std::pair<guint32, std::optional<CameraFailure>> cases[] = {
      {0, std::nullopt}, {1, CameraFailure::accessDenied}, {2, CameraFailure::accessDenied}};
  for (const auto& [code, failure] : cases) {
    portal.request.clear();
    ask();
    ASSERT_TRUE(portal.isAsked());
    portal.respond(code);
    EXPECT_EQ(answer(), failure) << code;
  }
  portal.refuses = true;
  ask();
  EXPECT_EQ(answer(), CameraFailure::noCamera) << "a portal without a camera";
  EXPECT_TRUE(std::holds_alternative<PipelineError>(CameraPortal::makeSource())) << "nor a way to it";
}

TEST_F(CameraPortalTest, AnswersWhenThePortalGoesAway) {
  {
    FakePortal portal;
    ask();
    ASSERT_TRUE(portal.isAsked());
  }
  EXPECT_EQ(answer(), CameraFailure::failed);
}

using SandboxTest = CameraFixture;

TEST_F(SandboxTest, AQuestionThatNobodyWaitsForIsTakenBack) {
  FakePortal portal;
  setenv("SNAP", "/snap/shop", 1);
  setSources("");
  present();
  ASSERT_TRUE(portal.isAsked());
  click("window-close-symbolic");
  ASSERT_TRUE(waitForOutcome());
  EXPECT_TRUE(std::holds_alternative<CaptureCancelled>(outcomes.at(0)));
  EXPECT_TRUE(wait([&] { return portal.isClosed; }, hangs)) << "the desktop still asks";
  portal.respond(0);
  pass(0.1);
  EXPECT_EQ(outcomes.size(), 1U);
  unsetenv("SNAP");
}

}  // namespace
}  // namespace orivex::gtk

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "glib/GRef.h"
#include "support/BusService.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/Visitor.h"
#include "ui/GtkApplicationPort.h"
#include "ui/SessionWatch.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Application.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 5;

// One bus plays both parts: GLib reads the addresses once, at its first question.
class Buses : public ::testing::Environment {
 public:
  void SetUp() override {
    bus_ = GRef<GTestDBus>::adopt(g_test_dbus_new(G_TEST_DBUS_NONE));
    const std::string display = g_getenv("DISPLAY") ? g_getenv("DISPLAY") : "";
    g_test_dbus_up(bus_.get());  // takes the display away
    g_setenv("DISPLAY", display.c_str(), TRUE);
    g_setenv("DBUS_SYSTEM_BUS_ADDRESS", g_test_dbus_get_bus_address(bus_.get()), TRUE);
  }
  void TearDown() override {
    const auto session = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    g_dbus_connection_set_exit_on_close(session.get(), FALSE);
    // The process still has connections: the daemon is ended without waiting for them.
    g_test_dbus_stop(bus_.get());
    pass(0.1);  // the loss of the system bus must not end the process
  }

  std::string address() const { return g_test_dbus_get_bus_address(bus_.get()); }

 private:
  GRef<GTestDBus> bus_;
};

auto& buses = *static_cast<Buses*>(::testing::AddGlobalTestEnvironment(std::make_unique<Buses>().release()));

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

class SessionWatchTest : public ::testing::Test {
 protected:
  void startService() { service_.emplace(buses.address()); }

  void startWatch() {
    watch_ = std::make_unique<SessionWatch>([this] { ++changes_; });
    EXPECT_FALSE(watch_->isAway());
    if (service_) wait([&] { return service_->sessionRequests() > 0; }, patience);
    pass(0.2);  // the session's proxy and the screen savers' have been made
  }

  bool becomes(bool away) {
    return wait([&] { return watch_->isAway() == away; }, patience);
  }

  LogLines log_;
  std::optional<LoginService> service_;
  std::unique_ptr<SessionWatch> watch_;
  int changes_ = 0;
};

TEST_F(SessionWatchTest, TheVisitorIsAwayForAsLongAsAnythingSaysSo) {
  startService();
  startWatch();
  constexpr const char* freedesktop = "org.freedesktop.ScreenSaver";
  constexpr const char* gnome = "org.gnome.ScreenSaver";
  const struct {
    const char* what;
    std::function<void(LoginService&, bool)> set;
  } causes[] = {
      {"locked", [](auto& service, bool on) { service.setLocked(on); }},
      {"sleeping", [](auto& service, bool on) { service.prepareForSleep(on); }},
      {"covered by one screen saver",
       [&](auto& service, bool on) { service.setScreenSaverActive(freedesktop, "/org/freedesktop/ScreenSaver", on); }},
      {"covered by the other",
       [&](auto& service, bool on) { service.setScreenSaverActive(gnome, "/org/gnome/ScreenSaver", on); }},
  };
  for (const auto& cause : causes) {
    SCOPED_TRACE(cause.what);
    changes_ = 0;
    cause.set(*service_, true);
    EXPECT_TRUE(becomes(true));
    cause.set(*service_, true);
    cause.set(*service_, false);
    EXPECT_TRUE(becomes(false));
    EXPECT_EQ(changes_, 2);
  }
  changes_ = 0;
  for (const auto& cause : causes) cause.set(*service_, true);
  EXPECT_TRUE(becomes(true));
  for (const auto& cause : causes) {
    pass(0.1);
    EXPECT_TRUE(watch_->isAway()) << "before the end of " << cause.what;
    cause.set(*service_, false);
  }
  EXPECT_TRUE(becomes(false));
  EXPECT_EQ(changes_, 2);
  EXPECT_TRUE(log_.get().empty());
}

TEST_F(SessionWatchTest, AScreenSaverThatEndsCoversNoLongerAndASessionMayBeLockedFromTheStart) {
  startService();
  startWatch();
  service_->setScreenSaverActive("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", true);
  EXPECT_TRUE(becomes(true));
  service_->release("org.gnome.ScreenSaver");
  EXPECT_TRUE(becomes(false));
  service_->setLocked(true);
  watch_ = std::make_unique<SessionWatch>([this] { ++changes_; });
  EXPECT_TRUE(becomes(true));
}

TEST_F(SessionWatchTest, WithoutAnyServiceNothingFailsAndOneLineTells) {
  startWatch();
  EXPECT_FALSE(watch_->isAway());
  EXPECT_EQ(log_.get().size(), 1U);
}

TEST_F(SessionWatchTest, MayEndAtAnyMoment) {
  startService();
  for (int turns = 0; turns < 12; ++turns) {
    watch_ = std::make_unique<SessionWatch>([this] { ++changes_; });
    for (int turn = 0; turn < turns; ++turn) g_main_context_iteration(nullptr, FALSE);
    watch_.reset();
  }
  service_->setLocked(true);
  pass(0.2);
  EXPECT_EQ(changes_, 0);
}

TEST_F(SessionWatchTest, AnActiveWindowResignsWhileTheSessionIsLocked) {
  startService();
  gtk_init();
  install();
  auto& application = Platform::current().application;
  std::string story;
  const auto became = application.observe(ApplicationEvent::didBecomeActive, [&] { story += "active "; });
  const auto resigns = application.observe(ApplicationEvent::willResignActive, [&] { story += "resigns "; });
  auto* const window = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window, "orivex-session");
  attach(window);
  gtk_window_present(window);
  ASSERT_TRUE(wait([&] { return gtk_widget_get_mapped(GTK_WIDGET(window)) != FALSE; }, patience));
  focusWindow(window, "orivex-session");
  ASSERT_TRUE(wait([&] { return story == "active "; }, patience));
  ASSERT_TRUE(wait([&] { return service_->sessionRequests() > 0; }, patience));
  pass(0.2);
  service_->setLocked(true);
  EXPECT_TRUE(wait([&] { return story == "active resigns "; }, patience)) << story;
  service_->setLocked(false);
  EXPECT_TRUE(wait([&] { return story == "active resigns active "; }, patience)) << story;
  gtk_window_destroy(window);
  EXPECT_TRUE(wait([&] { return story == "active resigns active resigns "; }, patience)) << story;
}

}  // namespace
}  // namespace orivex::gtk

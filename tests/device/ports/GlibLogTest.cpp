#include <cstdlib>

#include <glib.h>
#include <gtest/gtest.h>

#include "GlibLog.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

[[noreturn]] void writeAll() {
  g_log_writer_default_set_use_stderr(TRUE);
  log::setSink({});
  log::setEnabled(false);
  logToGlib();
  log::print("no chat", log::Level::error);
  log::print("a step");
  log::print("a token", log::Level::trace);
  log::setLevel(log::Level::debug);
  log::print("another step");
  std::exit(0);
}

// Each case has a process of its own, started anew: GLib reads its variable when it likes, and takes no setting once
// there are threads.
TEST(GlibLogTest, FailuresAreWarningsOfTheComponentAndStepsAreThereForWhoAsksEither) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto expectLog = [](const char* debugDomains, const char* lines) {
    EXPECT_EXIT((g_setenv("G_MESSAGES_DEBUG", debugDomains, TRUE), writeAll()), ::testing::ExitedWithCode(0), lines);
  };
  expectLog("", "Orivex-WARNING [^\n]*: no chat\n[0-9:.]+Z Orivex debug: another step\n$");
  expectLog("Orivex", "Orivex-WARNING [^\n]*: no chat\n[^\n]*Orivex-DEBUG: [^\n]*: a step\n[^\n]*: another step\n$");
}

}  // namespace
}  // namespace orivex::gtk

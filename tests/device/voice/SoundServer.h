#pragma once

#include <csignal>
#include <cstdlib>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "glib/GMemory.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {

/// A PulseAudio daemon of the test's own, whose microphone hears 440 Hz. As long as it lives it is the sound server of
/// this process.
class SoundServer {
 public:
  SoundServer() : before_(g_strdup(g_getenv("PULSE_SERVER"))) {
    g_setenv("PULSE_SERVER", ("unix:" + socket()).c_str(), TRUE);
    start();
  }
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;
  ~SoundServer() {
    stop();
    before_ ? g_setenv("PULSE_SERVER", before_.get(), TRUE) : (g_unsetenv("PULSE_SERVER"), TRUE);
  }

  /// Starts it again after `stop`.
  void start() {
    const std::string protocol = "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket();
    const std::string log = "--log-target=file:" + (folder_.path() / "log").string();
    const char* const arguments[] = {
        "pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--disallow-exit",
        "--realtime=no", "--high-priority=no", log.c_str(), protocol.c_str(), "--load=module-null-sink",
        // In pieces of 50 ms, as from a device, and not of two seconds.
        "--load=module-null-sink sink_name=tone rate=48000 norewinds=1", "--load=module-sine sink=tone frequency=440",
        "--load=module-remap-source source_name=microphone master=tone.monitor", nullptr};
    // Servers of one session bus or runtime folder take each other for a mistake.
    const GStrvPtr bare(g_environ_unsetenv(g_get_environ(), "DBUS_SESSION_BUS_ADDRESS"));
    const GStrvPtr environment(
        g_environ_setenv(g_strdupv(bare.get()), "XDG_RUNTIME_DIR", folder_.path().c_str(), TRUE));
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
    ASSERT_TRUE(g_spawn_async(nullptr, const_cast<char**>(arguments), environment.get(), flags, nullptr, nullptr,
                              &process_, nullptr));
    ASSERT_TRUE(wait([this] { return control("set-default-source microphone"); }, 10)) << "the server did not start";
  }

  /// Ends it at once, as a crash would.
  void stop() {
    if (process_ == 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(std::exchange(process_, 0), nullptr, 0);
  }

  /// Between the two it hangs.
  void freeze() const { ::kill(process_, SIGSTOP); }
  void thaw() const { ::kill(process_, SIGCONT); }

  /// Runs pactl with these arguments; returns whether it succeeded.
  bool control(const std::string& arguments) const {
    return std::system(("pactl " + arguments + " >/dev/null 2>&1").c_str()) == 0;
  }

 private:
  std::string socket() const { return folder_.path() / "pulse.socket"; }

  const GCharPtr before_;
  TemporaryFolder folder_;
  GPid process_ = 0;
};

}  // namespace orivex::gtk

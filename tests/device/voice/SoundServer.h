#pragma once

#include <string>

#include <sys/types.h>

#include "support/TemporaryFolder.h"

namespace orivex::gtk {

/// A PulseAudio daemon of the test's own, whose microphone hears 440 Hz. It becomes the sound server of this process.
class SoundServer {
 public:
  SoundServer();
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;
  ~SoundServer() { stop(); }

  /// Starts it again after `stop`.
  void start();

  /// Ends it at once, as a crash would.
  void stop();

  /// Between the two it hangs.
  void freeze() const;
  void thaw() const;

  /// Runs pactl with these arguments; returns whether it succeeded.
  bool control(const std::string& arguments) const;

 private:
  std::string socket() const { return folder_.path() / "pulse.socket"; }

  TemporaryFolder folder_;
  pid_t process_ = 0;
};

}  // namespace orivex::gtk

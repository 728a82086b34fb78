#pragma once

namespace orivex::gtk {

/// The desktop's program in which the visitor can look after the microphone.
struct SoundSettings {
  static bool areAvailable();

  /// A failure is one log line.
  static void open();
};

}  // namespace orivex::gtk

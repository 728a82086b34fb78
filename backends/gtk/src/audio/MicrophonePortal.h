#pragma once

#include <memory>

#include <gio/gio.h>

#include "../glib/GRef.h"

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// Asks for the microphone what guards the devices of sandboxed applications: org.freedesktop.portal.Device. It asks
/// the visitor and remembers the answer by itself.
class MicrophonePortal {
 public:
  MicrophonePortal() = delete;

  /// Main thread; `answer` is called once, later, on the main thread. No portal means no.
  static void ask(Once<void(bool granted)> answer);

 private:
  class Question;
};

}  // namespace orivex::gtk

#pragma once

#include <string>

#include "../ui/AlertDialog.h"
#include "../ui/HostWindow.h"

#include "orivex/platform/base/Once.h"

namespace orivex::gtk {

/// Asks the visitor whether an application may use the microphone. No answer is the default, and a key counts only when
/// it goes down after the question has come. Destroying it takes it off the screen.
class MicrophoneDialog {
 public:
  enum class Answer {
    allow,
    refuse,
    settings,  ///< the desktop's settings, please
    none,      ///< closed without an answer, or with its window
  };

  /// `isRefused`: the visitor has refused before, and is offered a way to think again. `answered` is called once and
  /// may destroy this object.
  MicrophoneDialog(const HostWindow& parent, const std::string& applicationName, bool isRefused,
                   Once<void(Answer)> answered);

 private:
  AlertDialog dialog_;
};

}  // namespace orivex::gtk

#pragma once

#include <string>

#include "orivex/platform/base/Once.h"

namespace orivex {

class View;

/// Whether the application may use the microphone.
class RecordPermission {
 public:
  RecordPermission() = default;
  RecordPermission(const RecordPermission&) = delete;
  RecordPermission& operator=(const RecordPermission&) = delete;
  virtual ~RecordPermission() = default;

  /// Asks the visitor in the name of `applicationName`, unless the answer is known already. Main thread; `answer` is
  /// called at most once, not inside this call and on an arbitrary thread. A question that ends without an answer, for
  /// example with its window, is a refusal that is not remembered. One that is open when the screen of `view` leaves
  /// ends with it: nothing is remembered, and `answer` is never called.
  virtual void request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) = 0;
};

}  // namespace orivex

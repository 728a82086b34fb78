#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "../glib/GRef.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Checks whether WebKit can start its first process before it is asked to. In a runtime folder without room that would
/// end the host's process, and with a session bus that does not answer it would hold the main thread for half a minute.
/// Main thread.
class EngineStart {
 public:
  using Completion = Once<void(std::optional<std::string> failure)>;

  explicit EngineStart(MainQueue& mainQueue) : mainQueue_(mainQueue) {}
  EngineStart(const EngineStart&) = delete;
  EngineStart& operator=(const EngineStart&) = delete;
  ~EngineStart();

  /// Whether a check has ended well; from then on WebKit is on its own.
  bool isPossible() const { return possible_; }

  /// Calls back, after this call, once the bus has answered or has been silent for some seconds. A failure is one line
  /// in the log.
  void check(Completion completion);

 private:
  void askBus();
  void end(const std::optional<std::string>& failure);

  MainQueue& mainQueue_;
  bool possible_ = false;
  std::vector<Completion> waiting_;
  GRef<GCancellable> asking_;  // null while the bus is not asked
  Alive alive_;
};

}  // namespace orivex::gtk

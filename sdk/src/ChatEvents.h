#pragma once

#include <string>

#include "orivex/sdk/Conversation.h"

namespace orivex {

class OVKFApi;

/// Tells the host how its chat fares: opened, revealed, failed, closed.
class ChatEvents {
 public:
  /// `screen` owns this object.
  explicit ChatEvents(const OVKFApi& screen) : screen_(screen) {}

  /// From now on counts what a failure took.
  void sessionStarted();

  void appeared();
  void revealed();

  /// Also writes one line to the log. `detail` is for it alone.
  void failed(ChatFailure::Cause cause, const std::string& detail = {}, int status = 0);

  /// The screen has disappeared for good.
  void closed();

 private:
  const OVKFApi& screen_;
  double startedAt_ = 0;  // seconds of the main queue's clock
  bool isOpen_ = false;
};

}  // namespace orivex

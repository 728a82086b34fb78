#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/RecordPermission.h"

namespace orivex::testing {

/// A visitor who answers when a test says so.
class VirtualRecordPermission final : public RecordPermission {
 public:
  explicit VirtualRecordPermission(MainQueue& queue) : queue_(queue) {}

  void request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) override;

  /// Answers every open question, from a worker thread of the queue.
  void answer(bool granted);

  /// Answers later questions at once.
  void remember(bool granted) { remembered_ = granted; }
  void forget() { remembered_.reset(); }

  /// The names in which the visitor was asked.
  const std::vector<std::string>& asked() const { return asked_; }
  void forgetAsked() { asked_.clear(); }

 private:
  void give(Once<void(bool)> answer, bool granted);

  MainQueue& queue_;
  std::optional<bool> remembered_;
  std::vector<std::string> asked_;
  std::vector<Once<void(bool)>> open_;
  Subscription leaves_;
};

}  // namespace orivex::testing

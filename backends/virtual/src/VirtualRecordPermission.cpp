#include "orivex/testing/VirtualRecordPermission.h"

#include <utility>

#include "ThreadCheck.h"

#include "orivex/platform/ui/View.h"

namespace orivex::testing {

void VirtualRecordPermission::request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) {
  requireMainThread(queue_, "RecordPermission::request");
  asked_.push_back(applicationName);
  if (remembered_) {
    give(std::move(answer), *remembered_);
  } else {
    open_.push_back(std::move(answer));
    leaves_ = view.observeLeaving([this] { open_.clear(); });
  }
}

void VirtualRecordPermission::answer(bool granted) {
  for (auto& question : std::exchange(open_, {})) give(std::move(question), granted);
}

void VirtualRecordPermission::give(Once<void(bool)> answer, bool granted) {
  queue_.global([answer = std::move(answer), granted]() mutable { std::move(answer)(granted); });
}

}  // namespace orivex::testing

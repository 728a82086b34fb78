#include "orivex/platform/base/ProcessState.h"

#include <utility>

namespace orivex {
namespace {

ProcessState* inUse = nullptr;

}  // namespace

ProcessState& ProcessState::current() {
  static auto* const own = new ProcessState;
  return inUse ? *inUse : *own;
}

ProcessState* ProcessState::use(ProcessState* state) {
  return std::exchange(inUse, state);
}

void ProcessState::clear() {
  // Apart from the map, to which the end of one may add another.
  const auto ended = [this] {
    const std::lock_guard lock(mutex_);
    return std::exchange(instances_, {});
  }();
}

}  // namespace orivex

#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <typeindex>

#include "orivex/Export.h"

namespace orivex {

struct Platform;

/// What a process has one of: the platform that is installed, and the instance behind each `shared`. Only the log is
/// apart from it. The test kit puts another one in its place for as long as a device lives: each is a fresh process.
class ProcessState {
 public:
  ProcessState() = default;
  ProcessState(const ProcessState&) = delete;
  ProcessState& operator=(const ProcessState&) = delete;
  ~ProcessState() = default;

  /// The one in use: at first the program's own, which is never destroyed, since callbacks of threads may come late.
  ORIVEX_API static ProcessState& current();

  /// Puts `state` in use and returns the one before; null stands for the program's own. Main thread, while no other
  /// thread works for the component.
  ORIVEX_API static ProcessState* use(ProcessState* state);

  /// Set by `Platform::install`.
  const Platform* platform = nullptr;

  /// The instance of `Value`, made on first use. Any thread. A class that nobody else may make has this one as a
  /// friend.
  template <class Value>
  Value& get() {
    const std::lock_guard lock(mutex_);
    auto& instance = instances_[typeid(Value)];
    if (!instance) instance = std::shared_ptr<Value>(new Value, [](Value* made) { delete made; });
    return *static_cast<Value*>(instance.get());
  }

  /// Destroys the instances.
  ORIVEX_API void clear();

 private:
  std::recursive_mutex mutex_;  // an instance may need another one
  std::map<std::type_index, std::shared_ptr<void>> instances_;
};

}  // namespace orivex

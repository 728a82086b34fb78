#pragma once

#include <type_traits>

namespace orivex::gtk {

/// Writes the exception that is being handled to the log. Any thread.
void logEscaped() noexcept;

/// Runs `work` for a C library, which no exception may cross: one that leaves it ends in the log, the rest of the work
/// is left out, and the library gets the result that means "no" or "nothing".
template <class Work>
auto contained(const Work& work) noexcept {
  using Result = std::invoke_result_t<const Work&>;
  try {
    return work();
  } catch (...) {
    logEscaped();
    if constexpr (!std::is_void_v<Result>) return Result{};
  }
}

}  // namespace orivex::gtk

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace orivex {

/// A value that does not fit. On its way up the exception collects the path to the value, as in
/// "messageBody.customItems[2].customMenus".
class JsonFault {
 public:
  explicit JsonFault(std::string problem) : problem_(std::move(problem)) {}

  void prepend(std::string_view key);
  void prepend(std::size_t index);

  /// The path and the problem, in one line.
  std::string line() const { return path_.empty() ? problem_ : path_ + ": " + problem_; }

 private:
  void prependSegment(std::string segment);

  std::string path_;
  std::string problem_;
};

/// Does something with what lies under a key or at an index; a fault takes that along.
template <class Segment, class Action>
void within(const Segment& segment, Action&& action) {
  try {
    action();
  } catch (JsonFault& fault) {
    fault.prepend(segment);
    throw;
  }
}

/// Foreign text made fit for a one-line message in UTF-8: what is long is cut short, and control characters, or bytes
/// of text that is not UTF-8, become '?'.
std::string printable(std::string_view text);

}  // namespace orivex

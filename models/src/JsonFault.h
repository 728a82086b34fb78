#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace orivex {

/// A value that does not fit: on its way up the exception collects the path to the value, as in
/// "messageBody.customItems[2].customMenus".
class JsonFault : public std::exception {
 public:
  explicit JsonFault(std::string problem) : problem_(std::move(problem)) {}

  void prepend(std::string_view key);
  void prepend(std::size_t index);

  /// The path and the problem, in one line.
  std::string line() const { return path_.empty() ? problem_ : path_ + ": " + problem_; }

  const char* what() const noexcept override { return problem_.c_str(); }

 private:
  void prependSegment(std::string segment);

  std::string path_;
  std::string problem_;
};

/// Does something with what lies under a key or at an index; a fault takes that along.
template <class Segment, class Action>
void within(Segment segment, Action&& action) {
  try {
    action();
  } catch (JsonFault& fault) {
    fault.prepend(segment);
    throw;
  }
}

}  // namespace orivex

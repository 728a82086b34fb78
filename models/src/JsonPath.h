#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orivex {

/// Where in a JSON text a value lies, as in "messageBody.customItems[2].customMenus". Built from the value upwards, so
/// that nothing is spent on it until something is wrong.
class JsonPath {
 public:
  /// Says that what the path leads to so far lies under a key, or at an index of an array.
  void prepend(std::string_view key);
  void prepend(std::size_t index);

  /// The path and what is wrong there, in one line.
  std::string with(std::string_view problem) const;

 private:
  std::string path;
};

}  // namespace orivex

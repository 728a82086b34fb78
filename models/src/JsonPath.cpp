#include "JsonPath.h"

#include "JsonText.h"

namespace orivex {

void JsonPath::prepend(std::string_view key) {
  const bool endsHere = path.empty() || path.front() == '[';
  path.insert(0, shown(key) + (endsHere ? "" : "."));
}

void JsonPath::prepend(std::size_t index) {
  const bool endsHere = path.empty() || path.front() == '[';
  path.insert(0, "[" + std::to_string(index) + (endsHere ? "]" : "]."));
}

std::string JsonPath::with(std::string_view problem) const {
  std::string line = path;
  if (!line.empty()) line += ": ";
  return line += problem;
}

}  // namespace orivex

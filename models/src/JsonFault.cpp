#include "JsonFault.h"

#include "JsonText.h"

namespace orivex {

void JsonFault::prepend(std::string_view key) {
  prependSegment(shown(key));
}

void JsonFault::prepend(std::size_t index) {
  prependSegment("[" + std::to_string(index) + "]");
}

void JsonFault::prependSegment(std::string segment) {
  if (!path_.empty() && path_.front() != '[') segment += '.';
  path_.insert(0, segment);
}

}  // namespace orivex

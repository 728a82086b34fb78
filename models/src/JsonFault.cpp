#include "JsonFault.h"

#include <simdjson.h>

namespace orivex {

void JsonFault::prepend(std::string_view key) {
  prependSegment(printable(key));
}

void JsonFault::prepend(std::size_t index) {
  prependSegment("[" + std::to_string(index) + "]");
}

void JsonFault::prependSegment(std::string segment) {
  if (!path_.empty() && path_.front() != '[') segment += '.';
  path_.insert(0, segment);
}

std::string printable(std::string_view text) {
  constexpr std::size_t longest = 40;
  constexpr auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  std::string line{text.substr(0, longest)};
  if (text.size() > longest) {
    // A cut character would make the message invalid UTF-8. Of a character no more than three bytes can be in the way.
    for (int i = 0; i < 3 && isContinuation(text[line.size()]); ++i) line.pop_back();
    line += "...";
  }
  const unsigned char highest = simdjson::validate_utf8(line) ? 0xFF : 0x7E;
  for (char& c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F || byte > highest) c = '?';
  }
  return line;
}

}  // namespace orivex

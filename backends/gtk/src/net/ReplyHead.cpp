#include "ReplyHead.h"

#include <charconv>

#include <strings.h>

namespace orivex::gtk {
namespace {

constexpr std::string_view locationName = "location:";
constexpr std::string_view blanks = " \t\r\n";

int statusOf(std::string_view statusLine) {
  int status = 0;
  const auto blank = statusLine.find(' ');
  if (blank == std::string_view::npos) return 0;
  std::from_chars(statusLine.data() + blank + 1, statusLine.data() + statusLine.size(), status);
  return status;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

void ReplyHead::take(std::string_view line) {
  if (line.starts_with("HTTP/")) {
    *this = {};
    status_ = statusOf(line);
  } else if (hasEnded_) {
    return;  // a trailer
  } else if (trimmed(line).empty()) {
    hasEnded_ = isFinal();
  } else if (line.size() > locationName.size() &&
             strncasecmp(line.data(), locationName.data(), locationName.size()) == 0) {
    location_ = trimmed(line.substr(locationName.size()));
  }
}

}  // namespace orivex::gtk

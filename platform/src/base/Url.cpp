#include "orivex/platform/base/Url.h"

#include <algorithm>
#include <cctype>

#include "orivex/platform/base/Text.h"

namespace orivex {
namespace {

bool isAlpha(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isHex(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool isAscii(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}
bool isOneOf(char c, std::string_view set) {
  return set.find(c) != std::string_view::npos;
}

constexpr std::string_view unreservedMarks = "-._~";
constexpr std::string_view subDelimiters = "!$&'()*+,;=";

// What may stand unescaped in every component; non-ASCII bytes may too and are escaped on the way.
bool isPlain(char c) {
  return isAlpha(c) || isDigit(c) || isOneOf(c, unreservedMarks) || isOneOf(c, subDelimiters) || !isAscii(c);
}

bool isComponent(std::string_view text, std::string_view alsoAllowed) {
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] == '%') {
      if (index + 2 >= text.size() || !isHex(text[index + 1]) || !isHex(text[index + 2])) return false;
      index += 2;
    } else if (!isPlain(text[index]) && !isOneOf(text[index], alsoAllowed)) {
      return false;
    }
  }
  return true;
}

bool isPort(std::string_view text) {
  if (text.size() > 5 || !std::all_of(text.begin(), text.end(), isDigit)) return false;
  return text.empty() || std::stoi(std::string(text)) <= 65535;
}

bool isAuthority(std::string_view text) {
  if (const auto at = text.rfind('@'); at != std::string_view::npos) {
    if (!isComponent(text.substr(0, at), ":")) return false;
    text.remove_prefix(at + 1);
  }
  std::string_view rest;
  if (text.starts_with('[')) {
    const auto close = text.find(']');
    if (close == std::string_view::npos) return false;
    const auto literal = text.substr(1, close - 1);
    if (literal.empty() ||
        !std::all_of(literal.begin(), literal.end(), [](char c) { return isHex(c) || isOneOf(c, ":.vV"); })) {
      return false;
    }
    rest = text.substr(close + 1);
  } else {
    const auto colon = text.find(':');
    if (!isComponent(text.substr(0, colon), "")) return false;
    if (colon != std::string_view::npos) rest = text.substr(colon);
  }
  if (rest.empty()) return true;
  return rest.front() == ':' && isPort(rest.substr(1));
}

// Length of "scheme:" without the colon; 0 for a relative reference.
std::size_t schemeLength(std::string_view text) {
  const auto end = text.find_first_of(":/?#");
  if (end == std::string_view::npos || end == 0 || text[end] != ':') return 0;
  const auto scheme = text.substr(0, end);
  const bool valid = isAlpha(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), [](char c) {
                       return isAlpha(c) || isDigit(c) || isOneOf(c, "+-.");
                     });
  return valid ? end : 0;
}

bool isReference(std::string_view text) {
  std::string_view rest = text;
  if (const auto length = schemeLength(text)) {
    rest.remove_prefix(length + 1);
  } else if (const auto end = rest.find_first_of(":/?#"); end != std::string_view::npos && rest[end] == ':') {
    return false;  // a colon in the first segment would read as a scheme
  }
  const auto hash = rest.find('#');
  if (hash != std::string_view::npos && !isComponent(rest.substr(hash + 1), ":@/?")) return false;
  rest = rest.substr(0, hash);
  const auto question = rest.find('?');
  if (question != std::string_view::npos && !isComponent(rest.substr(question + 1), ":@/?")) return false;
  rest = rest.substr(0, question);
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    const auto slash = rest.find('/');
    if (!isAuthority(rest.substr(0, slash))) return false;
    rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash);
  }
  return isComponent(rest, ":@/");
}

void appendEscaped(std::string& text, char c) {
  static constexpr std::string_view hex = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  text += '%';
  text += hex[byte >> 4U];
  text += hex[byte & 0xFU];
}

bool isControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// Where the path begins in an address that has a scheme and a host; nothing without them.
std::optional<std::size_t> authorityEnd(std::string_view text) {
  const auto scheme = schemeLength(text);
  if (scheme == 0 || text.substr(scheme, 3) != "://") return std::nullopt;
  const auto end = std::min(text.find_first_of("/?#", scheme + 3), text.size());
  auto host = text.substr(scheme + 3, end - scheme - 3);
  host.remove_prefix(host.rfind('@') + 1);  // 0 when there is none
  return host.empty() || host.front() == ':' ? std::nullopt : std::optional(end);
}

template <class Keep>
std::string escape(std::string_view text, Keep keep) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    if (keep(c)) {
      escaped += c;
    } else {
      appendEscaped(escaped, c);
    }
  }
  return escaped;
}

bool isEscape(std::string_view text) {
  return text.size() >= 3 && text[0] == '%' && isHex(text[1]) && isHex(text[2]);
}

// Path, query and fragment with all escaped that may not stand there as it is.
std::string escapedTail(std::string_view tail) {
  const auto fragment = tail.find('#');
  std::string escaped;
  escaped.reserve(tail.size());
  for (std::size_t index = 0; index < tail.size(); ++index) {
    const char c = tail[index];
    const bool isAllowed = (isAscii(c) && (isPlain(c) || isOneOf(c, ":@/?"))) || isEscape(tail.substr(index, 3));
    if (isAllowed || index == fragment) {
      escaped += c;
    } else {
      appendEscaped(escaped, c);
    }
  }
  return escaped;
}

int hexValue(char c) {
  return isDigit(c) ? c - '0' : (c | 0x20) - 'a' + 10;
}

}  // namespace

std::optional<Url> Url::parse(std::string_view text) {
  if (text.empty() || !isValidUtf8(text) || std::any_of(text.begin(), text.end(), isControl)) return std::nullopt;
  // Visitors' names and pages' own habits stand behind the host as they are; what the host itself is must be clear.
  const auto strict = text.substr(0, authorityEnd(text).value_or(text.size()));
  if (!isReference(strict)) return std::nullopt;
  return Url(escape(strict, isAscii) + escapedTail(text.substr(strict.size())));
}

Url Url::fromFilePath(std::string_view path) {
  return Url("file://" + escape(path, [](char c) {
               return isAscii(c) &&
                      (isAlpha(c) || isDigit(c) || isOneOf(c, unreservedMarks) || isOneOf(c, "!$&'()*+,=:@/"));
             }));
}

std::string Url::scheme() const {
  std::string scheme = text_.substr(0, schemeLength(text_));
  std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return scheme;
}

std::string Url::origin() const {
  const auto length = schemeLength(text_);
  if (length == 0 || text_.compare(length, 3, "://") != 0) return {};
  return text_.substr(0, text_.find_first_of("/?#", length + 3));
}

std::optional<std::string> Url::filePath() const {
  if (scheme() != "file") return std::nullopt;
  std::string_view rest = std::string_view(text_).substr(5);
  rest = rest.substr(0, rest.find_first_of("?#"));
  if (rest.starts_with("//")) rest.remove_prefix(std::min(rest.find('/', 2), rest.size()));
  std::string path;
  for (std::size_t index = 0; index < rest.size(); ++index) {
    if (rest[index] == '%') {
      path += static_cast<char>(hexValue(rest[index + 1]) * 16 + hexValue(rest[index + 2]));
      index += 2;
    } else {
      path += rest[index];
    }
  }
  return path;
}

std::optional<std::string> percentEncodeQuery(std::string_view text) {
  if (!isValidUtf8(text)) return std::nullopt;
  return escape(text,
                [](char c) { return isAscii(c) && (isAlpha(c) || isDigit(c) || isOneOf(c, "!$&'()*+,-./:;=?@_~")); });
}

}  // namespace orivex

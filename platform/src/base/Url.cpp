#include "orivex/platform/base/Url.h"

#include <algorithm>
#include <cctype>
#include <charconv>

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
bool isControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}
bool isOneOf(char c, std::string_view set) {
  return set.find(c) != std::string_view::npos;
}

// An ASCII letter, digit or one of these marks.
bool isAlphanumericOr(std::string_view marks, char c) {
  return isAlpha(c) || isDigit(c) || isOneOf(c, marks);
}

// What may stand unescaped in every component; non-ASCII bytes may too and are escaped on the way.
bool isPlain(char c) {
  return isAlphanumericOr("-._~!$&'()*+,;=", c) || !isAscii(c);
}

bool isEscape(std::string_view text) {
  return text.size() >= 3 && text[0] == '%' && isHex(text[1]) && isHex(text[2]);
}

bool isComponent(std::string_view text, std::string_view alsoAllowed) {
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (isPlain(text[index]) || isOneOf(text[index], alsoAllowed)) continue;
    if (!isEscape(text.substr(index, 3))) return false;
    index += 2;
  }
  return true;
}

bool isScheme(std::string_view text) {
  return !text.empty() && isAlpha(text.front()) &&
         std::all_of(text.begin(), text.end(), [](char c) { return isAlphanumericOr("+-.", c); });
}

bool isPort(std::string_view text) {
  if (text.size() > 5 || !std::all_of(text.begin(), text.end(), isDigit)) return false;
  return text.empty() || std::stoi(std::string(text)) <= 65535;
}

// Without its brackets.
bool isIpLiteral(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return isHex(c) || isOneOf(c, ":.vV"); });
}

bool isAuthority(std::string_view text) {
  if (const auto at = text.rfind('@'); at != std::string_view::npos) {
    if (!isComponent(text.substr(0, at), ":")) return false;
    text.remove_prefix(at + 1);
  }
  const bool isLiteral = text.starts_with('[');
  const auto hostEnd = std::min(isLiteral ? text.find(']') : text.find(':'), text.size());
  const auto host = text.substr(0, hostEnd);
  if (isLiteral ? hostEnd == text.size() || !isIpLiteral(host.substr(1)) : !isComponent(host, "")) return false;
  const auto rest = text.substr(hostEnd + (isLiteral ? 1 : 0));
  return rest.empty() || (rest.front() == ':' && isPort(rest.substr(1)));
}

// A reference cut at its delimiters; what is in the parts may still be wrong.
struct Parts {
  std::optional<std::string_view> scheme;
  std::optional<std::string_view> authority;
  std::string_view path;
  std::string_view query;
  std::string_view fragment;
};

Parts partsOf(std::string_view text) {
  const auto takeTail = [&text](char delimiter) {
    const auto at = text.find(delimiter);
    if (at == std::string_view::npos) return std::string_view();
    const auto tail = text.substr(at + 1);
    text.remove_suffix(tail.size() + 1);
    return tail;
  };
  Parts parts;
  parts.fragment = takeTail('#');
  parts.query = takeTail('?');
  if (const auto end = text.find_first_of(":/"); end != std::string_view::npos && text[end] == ':') {
    parts.scheme = text.substr(0, end);
    text.remove_prefix(end + 1);
  }
  if (text.starts_with("//")) {
    const auto end = std::min(text.find('/', 2), text.size());
    parts.authority = text.substr(2, end - 2);
    text.remove_prefix(end);
  }
  parts.path = text;
  return parts;
}

bool isReference(std::string_view text) {
  const Parts parts = partsOf(text);
  return (!parts.scheme || isScheme(*parts.scheme)) && (!parts.authority || isAuthority(*parts.authority)) &&
         isComponent(parts.path, ":@/") && isComponent(parts.query, ":@/?") && isComponent(parts.fragment, ":@/?");
}

// "scheme://authority" at the front of an address; empty without it.
std::string_view originOf(std::string_view text) {
  const Parts parts = partsOf(text);
  if (!parts.scheme || !parts.authority) return {};
  return text.substr(0, parts.scheme->size() + 3 + parts.authority->size());
}

// An origin that names a host.
bool hasHost(std::string_view origin) {
  const auto host = origin.substr(origin.find_last_of("/@") + 1);
  return !host.empty() && host.front() != ':';
}

// The text with every byte escaped but those for which `keep(byte, index)` holds.
template <class Keep>
std::string escape(std::string_view text, Keep keep) {
  constexpr std::string_view hex = "0123456789ABCDEF";
  std::string escaped;
  escaped.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char c = text[index];
    if (keep(c, index)) {
      escaped += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      escaped += {'%', hex[byte >> 4U], hex[byte & 0xFU]};
    }
  }
  return escaped;
}

// Path, query and fragment with all escaped that may not stand there as it is.
std::string escapeTail(std::string_view tail) {
  const auto fragment = tail.find('#');
  return escape(tail, [&](char c, std::size_t index) {
    return (isAscii(c) && (isPlain(c) || isOneOf(c, ":@/?"))) || isEscape(tail.substr(index)) || index == fragment;
  });
}

}  // namespace

std::optional<Url> Url::parse(std::string_view text) {
  if (text.empty() || !isValidUtf8(text) || std::any_of(text.begin(), text.end(), isControl)) return std::nullopt;
  // Visitors' names and pages' own habits stand behind the host as they are; what the host itself is must be clear.
  const auto origin = originOf(text);
  const auto strict = hasHost(origin) ? origin : text;
  if (!isReference(strict)) return std::nullopt;
  const auto head = escape(strict, [](char c, std::size_t) { return isAscii(c); });
  return Url(head + escapeTail(text.substr(strict.size())));
}

Url Url::fromFilePath(std::string_view path) {
  return Url("file://" + escape(path, [](char c, std::size_t) { return isAlphanumericOr("-._~!$&'()*+,=:@/", c); }));
}

std::string Url::scheme() const {
  std::string scheme{partsOf(text_).scheme.value_or("")};
  std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return scheme;
}

std::string Url::origin() const {
  return std::string(originOf(text_));
}

std::optional<std::string> Url::filePath() const {
  if (scheme() != "file") return std::nullopt;
  const auto escaped = partsOf(text_).path;
  std::string path;
  for (std::size_t index = 0; index < escaped.size(); ++index) {
    unsigned char byte = static_cast<unsigned char>(escaped[index]);
    if (escaped[index] == '%') {
      std::from_chars(&escaped[index + 1], &escaped[index + 3], byte, 16);
      index += 2;
    }
    path += static_cast<char>(byte);
  }
  return path;
}

std::optional<std::string> percentEncodeQuery(std::string_view text) {
  if (!isValidUtf8(text)) return std::nullopt;
  return escape(text, [](char c, std::size_t) { return isAlphanumericOr("!$&'()*+,-./:;=?@_~", c); });
}

}  // namespace orivex

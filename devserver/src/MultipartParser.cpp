#include "MultipartParser.h"

#include <algorithm>
#include <utility>

#include "GHandles.h"

namespace orivex::devserver {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view blanks = " \t";
/// A part's headers are a few hundred bytes; more than this is not a form.
constexpr std::size_t mostHeaderBytes = 16U << 10U;

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
  return left.size() == right.size() && g_ascii_strncasecmp(left.data(), right.data(), left.size()) == 0;
}

/// A quoted string from its opening quote on; `rest` moves behind the closing one. Only quotes and backslashes can be
/// escaped: browsers send the backslashes of a path as they are.
std::string takeQuoted(std::string_view& rest) {
  std::string value;
  std::size_t at = 1;
  for (; at < rest.size() && rest[at] != '"'; ++at) {
    const bool escaped = rest[at] == '\\' && at + 1 < rest.size() && (rest[at + 1] == '"' || rest[at + 1] == '\\');
    if (escaped) ++at;
    value += rest[at];
  }
  rest.remove_prefix(std::min(at + 1, rest.size()));
  return value;
}

/// What browsers and curl write into a name for a quote and for line ends.
std::string withoutFormEscapes(std::string text) {
  constexpr std::pair<std::string_view, char> escapes[] = {{"%22", '"'}, {"%0D", '\r'}, {"%0A", '\n'}};
  for (const auto& [escape, character] : escapes)
    for (auto at = text.find(escape); at != std::string::npos; at = text.find(escape, at + 1))
      text.replace(at, escape.size(), 1, character);
  return text;
}

/// The value of "filename*": a character set, two quotes, then percent-encoded bytes.
std::optional<std::string> extendedValue(const std::string& text) {
  const auto second = text.find('\'', text.find('\'') + 1);
  if (!equalsIgnoringCase(text.substr(0, text.find('\'')), "UTF-8") || second == std::string::npos) return std::nullopt;
  const GCharPtr decoded(g_uri_unescape_string(text.c_str() + second + 1, nullptr));
  return decoded ? std::optional<std::string>(decoded.get()) : std::nullopt;
}

void readDisposition(std::string_view value, PartHeaders& part) {
  auto rest = value;
  bool extended = false;
  while (rest.find(';') != std::string_view::npos) {
    rest = trimmed(rest.substr(rest.find(';') + 1));
    const auto equals = std::min(rest.find('='), rest.size());
    const auto key = trimmed(rest.substr(0, equals));
    rest = trimmed(rest.substr(std::min(equals + 1, rest.size())));
    const std::string text =
        rest.starts_with('"') ? takeQuoted(rest) : std::string(trimmed(rest.substr(0, rest.find(';'))));
    if (equalsIgnoringCase(key, "name")) part.name = withoutFormEscapes(text);
    if (equalsIgnoringCase(key, "filename") && !extended) part.fileName = withoutFormEscapes(text);
    if (!equalsIgnoringCase(key, "filename*")) continue;
    if (auto name = extendedValue(text)) {
      part.fileName = std::move(name);
      extended = true;
    }
  }
}

}  // namespace

PartHeaders parsePartHeaders(std::string_view lines) {
  PartHeaders part;
  while (!lines.empty()) {
    const auto end = std::min(lines.find(lineEnd), lines.size());
    const auto line = lines.substr(0, end);
    lines.remove_prefix(std::min(end + lineEnd.size(), lines.size()));
    const auto colon = std::min(line.find(':'), line.size());
    const auto name = trimmed(line.substr(0, colon));
    const auto value = trimmed(line.substr(std::min(colon + 1, line.size())));
    if (equalsIgnoringCase(name, "Content-Disposition")) readDisposition(value, part);
    if (equalsIgnoringCase(name, "Content-Type")) part.contentType = value;
  }
  return part;
}

// The delimiter belongs to the line end before it. The first one has none, so one is put there.
MultipartParser::MultipartParser(std::string_view boundary, Handlers handlers)
    : delimiter_("\r\n--" + std::string(boundary)), handlers_(std::move(handlers)), buffer_(lineEnd) {}

bool MultipartParser::feed(std::string_view bytes) {
  if (state_ != State::Epilogue && state_ != State::Malformed) buffer_.append(bytes);
  while (step()) {
  }
  return state_ != State::Malformed;
}

bool MultipartParser::step() {
  switch (state_) {
    case State::Preamble:
      return skipPreamble();
    case State::DelimiterEnd:
      return endDelimiter();
    case State::Headers:
      return readHeaders();
    case State::Body:
      return readBody();
    case State::Epilogue:
    case State::Malformed:
      return false;
  }
  return false;
}

bool MultipartParser::fail() {
  state_ = State::Malformed;
  buffer_.clear();
  return false;
}

bool MultipartParser::skipPreamble() {
  const auto at = buffer_.find(delimiter_);
  if (at == std::string::npos) {
    const auto kept = std::min(buffer_.size(), delimiter_.size() - 1);
    buffer_.erase(0, buffer_.size() - kept);
    return false;
  }
  buffer_.erase(0, at + delimiter_.size());
  state_ = State::DelimiterEnd;
  return true;
}

bool MultipartParser::endDelimiter() {
  // Blanks may follow a delimiter; anything else than a line end means that the data held the boundary.
  const auto at = buffer_.find_first_not_of(blanks);
  if (at == std::string::npos || at + 2 > buffer_.size()) return false;
  const auto next = std::string_view(buffer_).substr(at, 2);
  if (at == 0 && next == "--") {
    state_ = State::Epilogue;
    buffer_.clear();
    return false;
  }
  if (next != lineEnd) return fail();
  // The line end stays: the blank line that ends the headers is then found even when there are none.
  buffer_.erase(0, at);
  state_ = State::Headers;
  return true;
}

bool MultipartParser::readHeaders() {
  const auto end = buffer_.find("\r\n\r\n");
  if (end == std::string::npos) return buffer_.size() > mostHeaderBytes && fail();
  handlers_.begin(parsePartHeaders(std::string_view(buffer_).substr(0, end)));
  buffer_.erase(0, end + 4);
  state_ = State::Body;
  return true;
}

bool MultipartParser::readBody() {
  const auto at = buffer_.find(delimiter_);
  const bool found = at != std::string::npos;
  // The last bytes may be the beginning of a delimiter whose rest is still to come.
  const auto certain = found ? at : buffer_.size() - std::min(buffer_.size(), delimiter_.size() - 1);
  if (certain > 0) handlers_.data(std::string_view(buffer_).substr(0, certain));
  buffer_.erase(0, found ? at + delimiter_.size() : certain);
  if (!found) return false;
  handlers_.end();
  state_ = State::DelimiterEnd;
  return true;
}

}  // namespace orivex::devserver

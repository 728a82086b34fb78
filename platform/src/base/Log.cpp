#include "orivex/platform/base/Log.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <utility>

namespace orivex {
namespace log {
namespace {

// Long enough for every address and error seen in practice; a page that posts megabytes must not flood the log.
constexpr std::size_t longestEntry = 4096;

bool enabledAtStart() {
  if (const char* asked = std::getenv("ORIVEX_DEBUG_LOG")) return std::string_view(asked) != "0";
#ifdef ORIVEX_DEBUG_LOG
  return true;
#else
  return false;
#endif
}

std::atomic<bool>& enabledFlag() {
  static std::atomic<bool> flag = enabledAtStart();
  return flag;
}

struct SinkHolder {
  std::recursive_mutex mutex;
  Sink sink;
  bool isInSink = false;
};

SinkHolder& holder() {
  static auto* const instance = new SinkHolder;  // threads may still log while statics are being destroyed
  return *instance;
}

bool isContinuationByte(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string_view cut(std::string_view text) {
  if (text.size() <= longestEntry) return text;
  std::size_t end = longestEntry;
  while (end > longestEntry - 3 && isContinuationByte(text[end])) --end;  // a character has three of them at most
  return text.substr(0, end);
}

// Whether a terminal obeys the character at `index`: ASCII's controls, and U+0080 to U+009F, which are two bytes.
bool isControl(std::string_view text, std::size_t index) {
  const auto byteAt = [text](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
  const auto isLongControl = [&](std::size_t at) {
    return byteAt(at) == 0xC2 && byteAt(at + 1) >= 0x80 && byteAt(at + 1) < 0xA0;
  };
  return byteAt(index) < 0x20 || byteAt(index) == 0x7F || isLongControl(index) ||
         (index > 0 && isLongControl(index - 1));
}

void appendShown(std::string& line, std::string_view text, bool quoted) {
  constexpr std::string_view breaks = "\n\r\t";
  constexpr std::string_view letters = "nrt";
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char c = text[index];
    if (const auto at = breaks.find(c); at != std::string_view::npos) {
      line += '\\';
      line += letters[at];
    } else if (isControl(text, index)) {
      char escape[5];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
      line += escape;
    } else {
      if (quoted && (c == '"' || c == '\\')) line += '\\';
      line += c;
    }
  }
}

std::string entry(std::string_view text, bool quoted) {
  const auto shown = cut(text);
  std::string line;
  line.reserve(shown.size() + 32);
  if (quoted) line += '"';
  appendShown(line, shown, quoted);
  if (shown.size() < text.size()) line += "... (" + std::to_string(text.size()) + " bytes)";
  if (quoted) line += '"';
  return line;
}

void write(const std::string& line) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  if (!target.sink || target.isInSink) {
    std::fprintf(stderr, "%s\n", line.c_str());
    return;
  }
  target.isInSink = true;
  const Sink sink = target.sink;  // which may replace itself
  sink(line);
  target.isInSink = false;
}

}  // namespace

void setSink(Sink sink) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  target.sink = std::move(sink);
}

void setEnabled(bool enabled) {
  enabledFlag() = enabled;
}

bool isEnabled() {
  return enabledFlag();
}

void print(std::string_view text) {
  if (isEnabled()) write(entry(text, false));
}

void debugPrint(std::string_view text) {
  if (isEnabled()) write(entry(text, true));
}

}  // namespace log

void fatalError(std::string_view origin, std::string_view message) {
  std::fprintf(stderr, "%.*s: Fatal error: %.*s\n", static_cast<int>(origin.size()), origin.data(),
               static_cast<int>(message.size()), message.data());
  std::abort();
}

}  // namespace orivex

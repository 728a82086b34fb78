#include "orivex/platform/base/Log.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
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
  std::shared_ptr<const Sink> sink;
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

void appendByte(std::string& line, char character) {
  static constexpr char hex[] = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(character);
  line += "\\x";
  line += hex[byte >> 4U];
  line += hex[byte & 0xFU];
}

// U+0080 to U+009F: control characters in two bytes, to which terminals listen as well.
bool isLongControl(std::string_view text) {
  return text.size() > 1 && text[0] == '\xC2' && isContinuationByte(text[1]) &&
         static_cast<unsigned char>(text[1]) < 0xA0;
}

void appendEscaped(std::string& line, char character, bool quoted) {
  const auto byte = static_cast<unsigned char>(character);
  switch (character) {
    case '\n':
      line += "\\n";
      return;
    case '\r':
      line += "\\r";
      return;
    case '\t':
      line += "\\t";
      return;
    case '"':
    case '\\':
      if (quoted) line += '\\';
      line += character;
      return;
    default:
      break;
  }
  if (byte < 0x20 || byte == 0x7F) {
    appendByte(line, character);
  } else {
    line += character;
  }
}

std::string entry(std::string_view text, bool quoted) {
  const auto shown = cut(text);
  std::string line;
  line.reserve(shown.size() + 32);
  if (quoted) line += '"';
  for (std::size_t index = 0; index < shown.size(); ++index) {
    if (isLongControl(shown.substr(index))) {
      appendByte(line, shown[index]);
      appendByte(line, shown[++index]);
    } else {
      appendEscaped(line, shown[index], quoted);
    }
  }
  if (shown.size() < text.size()) line += "... (" + std::to_string(text.size()) + " bytes)";
  if (quoted) line += '"';
  return line;
}

// Marks the time in which a sink runs, however it ends.
class InSink {
 public:
  explicit InSink(bool& mark) : mark_(mark) { mark = true; }
  InSink(const InSink&) = delete;
  InSink& operator=(const InSink&) = delete;
  ~InSink() { mark_ = false; }

 private:
  bool& mark_;
};

void write(const std::string& line) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  if (target.sink && !target.isInSink) {
    const auto sink = target.sink;  // which may replace itself
    const InSink mark(target.isInSink);
    (*sink)(line);
  } else {
    std::fprintf(stderr, "%s\n", line.c_str());
  }
}

}  // namespace

void setSink(Sink sink) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  target.sink = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
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

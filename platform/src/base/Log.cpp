#include "orivex/platform/base/Log.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <mutex>
#include <string>
#include <utility>

namespace orivex {
namespace log {
namespace {

// Long enough for every address and error seen in practice; a page that posts megabytes must not flood the log.
constexpr std::size_t longestEntry = 4096;

constexpr std::string_view levelNames[] = {"error", "warning", "info", "debug", "trace"};

Level levelAtStart() {
  if (const char* asked = std::getenv("ORIVEX_DEBUG_LOG")) {
    const auto* const name = std::find(std::begin(levelNames), std::end(levelNames), asked);
    if (name != std::end(levelNames)) return static_cast<Level>(name - std::begin(levelNames));
    return std::string_view(asked) == "0" ? Level::warning : Level::debug;
  }
#ifdef ORIVEX_DEBUG_LOG
  return Level::trace;
#else
  return Level::warning;
#endif
}

std::atomic<Level>& mostVerbose() {
  static std::atomic<Level> level = levelAtStart();
  return level;
}

struct SinkHolder {
  std::recursive_mutex mutex;
  Sink sink;
  bool isInSink = false;
  DeviceLog deviceLog = nullptr;
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

struct Secret {
  std::string_view name;
  std::string_view end;  // what ends its value
};

constexpr std::string_view endOfWord = "&#\"'\\ \t\r\n<>,;)}";
constexpr std::string_view endOfText = "\"'\\\r\n}";

constexpr Secret secrets[] = {
    {"access_token", endOfWord}, {"appkey", endOfWord}, {"app_key", endOfWord}, {"authorization", endOfText}};

// Where the value begins that the text before `at` names, in an address, a header or JSON; `at` when there is none.
std::size_t valueAfter(std::string_view text, std::size_t at) {
  for (;;) {
    const auto rest = text.substr(at);
    if (rest.starts_with("%3d") || rest.starts_with("%3a") || rest.starts_with("%22") || rest.starts_with("%20")) {
      at += 3;
    } else if (!rest.empty() && std::string_view("=:\"'\\ ").find(rest.front()) != std::string_view::npos) {
      ++at;
    } else {
      return at;
    }
  }
}

std::string masked(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  std::string result;
  std::size_t copied = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (const auto& [name, end] : secrets) {
      if (lower.compare(at, name.size(), name) != 0) continue;
      const auto value = valueAfter(lower, at + name.size());
      if (value == at + name.size()) continue;
      at = std::min(text.find_first_of(end, value), text.size());
      result.append(text.substr(copied, value - copied)).append(at > value ? "***" : "");
      copied = at;
    }
  }
  return result.append(text.substr(copied));
}

std::string entry(std::string_view text, bool quoted) {
  const auto shown = cut(text);
  std::string line;
  line.reserve(shown.size() + 32);
  if (quoted) line += '"';
  appendShown(line, isEnabled(Level::trace) ? std::string(shown) : masked(shown), quoted);
  if (shown.size() < text.size()) line += "... (" + std::to_string(text.size()) + " bytes)";
  if (quoted) line += '"';
  return line;
}

// In UTC: a process that may open no file has no other time zone.
std::string timeOfDay() {
  using namespace std::chrono;
  const auto now = floor<milliseconds>(system_clock::now());
  const hh_mm_ss time(now - floor<days>(now));
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03dZ", static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count()));
  return text;
}

void write(Level level, const std::string& line) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  if (target.sink && !target.isInSink) {
    target.isInSink = true;
    const Sink sink = target.sink;  // which may replace itself
    sink(line);
    target.isInSink = false;
  } else if (!target.deviceLog || !target.deviceLog(level, line)) {
    std::fprintf(stderr, "%s Orivex %s: %s\n", timeOfDay().c_str(), levelNames[static_cast<std::size_t>(level)].data(),
                 line.c_str());
  }
}

}  // namespace

void setSink(Sink sink) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  target.sink = std::move(sink);
}

void setDeviceLog(DeviceLog deviceLog) {
  auto& target = holder();
  const std::lock_guard lock(target.mutex);
  target.deviceLog = deviceLog;
}

void setLevel(Level level) {
  mostVerbose() = level;
}

void setEnabled(bool enabled) {
  setLevel(enabled ? Level::trace : Level::warning);
}

bool isEnabled(Level level) {
  return level <= mostVerbose();
}

void print(std::string_view text, Level level) {
  if (isEnabled(level)) write(level, entry(text, false));
}

void debugPrint(std::string_view text, Level level) {
  if (isEnabled(level)) write(level, entry(text, true));
}

}  // namespace log

void fatalError(std::string_view origin, std::string_view message) {
  std::fprintf(stderr, "%.*s: Fatal error: %.*s\n", static_cast<int>(origin.size()), origin.data(),
               static_cast<int>(message.size()), message.data());
  std::abort();
}

}  // namespace orivex

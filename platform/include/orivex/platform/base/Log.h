#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "orivex/Export.h"

/// The log: one line per entry, to standard error with level and time, to GLib's structured log where the GTK device
/// is installed, or to a sink of the host. Failures are written always; the environment variable ORIVEX_DEBUG_LOG names
/// the level up to which entries are written (1: debug, 0: warning), and the host may set another.
///
/// What follows `access_token`, `appkey` or `Authorization` in an entry is masked, unless the level is trace.
namespace orivex::log {

enum class Level {
  error,    ///< the visitor has no chat
  warning,  ///< something else failed
  info,     ///< the page was refused something
  debug,    ///< what happens, step by step, and what the page writes to its console
  trace,    ///< the chat page's address, bodies of the page's messages
};

/// Receives one line without its line break; may be called on any thread, one call at a time. What it logs itself goes
/// where lines go without it. It must not throw.
using Sink = std::function<void(std::string_view line)>;

/// Replaces the sink; an empty one brings back standard error or GLib's log.
ORIVEX_API void setSink(Sink sink);

/// Writes entries up to `level`.
ORIVEX_API void setLevel(Level level);

/// All entries, or failures only.
ORIVEX_API void setEnabled(bool enabled);

/// Ask before building a costly line.
ORIVEX_API bool isEnabled(Level level = Level::debug);

/// Writes one entry. Line breaks and other control characters inside it are escaped, so that page data can neither
/// forge a second entry nor reach a terminal; a text over 4,096 bytes is cut and its length named.
ORIVEX_API void print(std::string_view text, Level level = Level::debug);

/// Writes one entry as a debugger shows a string: in quotes, with quotes and backslashes escaped.
void debugPrint(std::string_view text, Level level = Level::debug);

inline void warning(std::string_view text) {
  print(text, Level::warning);
}

/// Where a device puts lines for which there is no sink; false leaves the line to standard error.
using DeviceLog = bool (*)(Level level, const std::string& line);
ORIVEX_API void setDeviceLog(DeviceLog deviceLog);

}  // namespace orivex::log

namespace orivex {

/// Ends the process with one clear line on standard error: a programming error of the host or of this component.
/// `origin` is the place that the reader should look at, for example "OrivexSDK/ChatManager:30".
[[noreturn]] ORIVEX_API void fatalError(std::string_view origin, std::string_view message);

}  // namespace orivex

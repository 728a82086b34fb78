#pragma once

#include <functional>
#include <string_view>

#include "orivex/Export.h"

/// The debug log: one line per entry, to a sink that the host may replace. Off in release builds unless asked for by
/// `setEnabled`, or by a value other than 0 in the environment variable ORIVEX_DEBUG_LOG.
namespace orivex::log {

/// Receives one line without its line break; may be called on any thread, one call at a time. What it logs itself goes
/// to standard error. It must not throw.
using Sink = std::function<void(std::string_view line)>;

/// Replaces the sink; an empty one brings back standard error.
ORIVEX_API void setSink(Sink sink);

ORIVEX_API void setEnabled(bool enabled);

/// Ask before building a costly line.
bool isEnabled();

/// Writes one entry. Line breaks and other control characters inside it are escaped, so that page data can neither
/// forge a second entry nor reach a terminal; a text over 4,096 bytes is cut and its length named.
ORIVEX_API void print(std::string_view text);

/// Writes one entry as a debugger shows a string: in quotes, with quotes and backslashes escaped.
void debugPrint(std::string_view text);

}  // namespace orivex::log

namespace orivex {

/// Ends the process with one clear line on standard error: a programming error of the host or of this component.
/// `origin` is the place that the reader should look at, for example "OrivexSDK/ChatManager:30".
[[noreturn]] ORIVEX_API void fatalError(std::string_view origin, std::string_view message);

}  // namespace orivex

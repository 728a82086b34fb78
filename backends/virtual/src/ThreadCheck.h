#pragma once

#include <string_view>

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// Stops the process unless this is the main thread. `operation` is what the reader of the message called.
void requireMainThread(const MainQueue& queue, std::string_view operation);

}  // namespace orivex::testing

#pragma once

#include <functional>

#include "video/GstPointers.h"

namespace orivex::gtk {

/// Hands every sample of the appsink called `name` inside `bin` to `handler`, on a streaming thread. The handler lives
/// as long as the appsink. False when there is no such element.
bool handleSamples(GstElement& bin, const char* name, std::function<void(SharedSample)> handler);

}  // namespace orivex::gtk

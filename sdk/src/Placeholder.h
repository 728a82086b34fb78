#pragma once

#include <functional>
#include <memory>

#include "orivex/platform/ui/WebView.h"

namespace orivex {

/// What lies over the chat page until it is revealed: the local skeleton page, before that has been painted the main of
/// its shapes, and a button that calls `goBack`.
std::shared_ptr<WebView> makePlaceholder(const Rect& frame, std::function<void()> goBack);

}  // namespace orivex

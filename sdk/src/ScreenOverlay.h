#pragma once

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ui/ViewController.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {

/// From here on the overlay shows over the window of `screen`: what comes next is said there.
inline void bringOverlayTo(const ViewController& screen) {
  if (auto* const window = screen.window()) Platform::current().progressOverlay.setWindow(window->weak_from_this());
}

}  // namespace orivex

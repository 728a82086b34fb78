#pragma once

#include <memory>
#include <utility>

#include "orivex/platform/ui/NavigationController.h"

namespace orivex {

/// Wraps `function` so that it does nothing once `screen` is gone, and keeps the screen while it runs: it may close it.
template <class Function>
auto guarded(const ViewController& screen, Function function) {
  return [screen = screen.weak_from_this(), function = std::move(function)](auto&&... arguments) {
    if (const auto kept = screen.lock()) function(std::forward<decltype(arguments)>(arguments)...);
  };
}

/// Sends `screen` away by both ways at once, since it does not know whether it was presented or pushed.
inline void closeScreen(ViewController& screen, bool animated) {
  screen.dismiss(animated);
  if (auto* navigation = screen.navigationController()) navigation->popViewController(animated);
}

/// The same, but only while the screen shows: what covers it is not its own to send away.
inline void closeScreenIfShown(ViewController& screen) {
  if (screen.isViewLoaded() && screen.view()->isShowing()) screen.goBack();
}

}  // namespace orivex

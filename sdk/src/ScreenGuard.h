#pragma once

#include <memory>
#include <utility>

#include "orivex/platform/ui/ViewController.h"

namespace orivex {

/// Wraps `function` so that it does nothing once `screen` is gone, and keeps the screen while it runs: it may close it.
template <class Function>
auto guarded(const ViewController& screen, Function function) {
  return [screen = screen.weak_from_this(), function = std::move(function)](auto&&... arguments) {
    if (const auto kept = screen.lock()) function(std::forward<decltype(arguments)>(arguments)...);
  };
}

}  // namespace orivex

#pragma once

#include "orivex/platform/ui/NavigationController.h"

namespace orivex {

/// Sends `screen` away by both ways at once, since it does not know whether it was presented or pushed.
inline void closeScreen(ViewController& screen, bool animated) {
  screen.dismiss(animated);
  if (auto* navigation = screen.navigationController()) navigation->popViewController(animated);
}

/// The same, but only while the screen shows.
inline void closeScreenIfShown(ViewController& screen) {
  if (screen.isViewInWindow()) closeScreen(screen, true);
}

}  // namespace orivex

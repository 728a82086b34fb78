#pragma once

#include <string>

#include "orivex/platform/base/Geometry.h"

namespace orivex {

enum class OverlayStyle { light, dark };

/// `black`: dims what lies behind and takes its input.
enum class OverlayMask { none, black };

/// The one panel over the current window for spinners, progress and short notices. A later call replaces what an
/// earlier one shows. Main thread. Without a window there is nothing to show and nothing fails.
class ProgressOverlay {
 public:
  ProgressOverlay() = default;
  ProgressOverlay(const ProgressOverlay&) = delete;
  ProgressOverlay& operator=(const ProgressOverlay&) = delete;
  virtual ~ProgressOverlay() = default;

  /// A spinner without an end.
  virtual void show() = 0;

  /// `fraction` from 0 to 1 as a ring, with `status` under it.
  virtual void showProgress(float fraction, const std::string& status) = 0;

  /// An information mark with `status`, announced to screen readers.
  virtual void showInfo(const std::string& status) = 0;

  virtual void dismiss() = 0;

  virtual void setMinimumSize(Size size) = 0;
  virtual void setStyle(OverlayStyle style) = 0;
  virtual void setMask(OverlayMask mask) = 0;

  /// Seconds after which whatever is shown goes away by itself.
  virtual void setMaximumDismissTime(double seconds) = 0;
};

}  // namespace orivex

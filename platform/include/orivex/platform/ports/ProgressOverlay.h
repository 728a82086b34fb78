#pragma once

#include <memory>
#include <string>
#include <utility>

#include "orivex/platform/base/Geometry.h"

namespace orivex {

class Application;
class Window;

enum class OverlayStyle { light, dark };

/// `black`: dims what lies behind and takes its input.
enum class OverlayMask { none, black };

/// The one panel over a window for spinners, progress and short messages. A later call replaces what an earlier one
/// shows. Main thread. Without a window there is nothing to show and nothing fails.
class ProgressOverlay {
 public:
  ProgressOverlay() = default;
  ProgressOverlay(const ProgressOverlay&) = delete;
  ProgressOverlay& operator=(const ProgressOverlay&) = delete;
  virtual ~ProgressOverlay() = default;

  /// From the next call on the panel shows over `window`, and nowhere once that is gone. An empty one, as at first,
  /// stands for the current window.
  void setWindow(std::weak_ptr<Window> window) { window_ = std::move(window); }
  const std::weak_ptr<Window>& window() const { return window_; }

  /// A spinner without an end.
  virtual void show() = 0;

  /// `fraction` from 0 to 1 as a ring, with `status` under it.
  virtual void showProgress(float fraction, const std::string& status) = 0;

  /// An information mark with `status`, announced to screen readers.
  virtual void showInfo(const std::string& status) = 0;

  /// The same without the mask: what lies behind goes on taking input.
  virtual void showNotice(const std::string& status) = 0;

  virtual void dismiss() = 0;

  virtual void setMinimumSize(Size size) = 0;
  virtual void setStyle(OverlayStyle style) = 0;
  virtual void setMask(OverlayMask mask) = 0;

  /// Seconds after which a message goes away by itself; a spinner and progress stay until they are dismissed.
  virtual void setMaximumDismissTime(double seconds) = 0;

 protected:
  /// Where the panel belongs now; null without a window.
  std::shared_ptr<Window> shownIn(const Application& application) const;

 private:
  std::weak_ptr<Window> window_;
};

}  // namespace orivex

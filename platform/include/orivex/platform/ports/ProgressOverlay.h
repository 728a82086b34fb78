#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "orivex/Export.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Interface.h"

namespace orivex {

class Application;
class View;
class Window;

enum class OverlayStyle { light, dark };

/// `black`: dims what lies behind and takes its input.
enum class OverlayMask { none, black };

/// What the visitor may do about something when he likes.
struct OverlayOffer {
  std::weak_ptr<Window> window;  ///< over which it is made
  std::string status;            ///< what it is about
  std::function<void()> retry;   ///< "重试"
  std::function<void()> drop;    ///< "✕"
};

/// The one panel over a window for spinners, progress and short messages. A later call replaces what an earlier one
/// shows. Main thread. Without a window there is nothing to show and nothing fails.
class ProgressOverlay : public Interface {
 public:
  /// From the next call on the panel shows over `window`, and nowhere once that is gone. An empty one, as at first,
  /// stands for the current window.
  void setWindow(std::weak_ptr<Window> window) { window_ = std::move(window); }
  const std::weak_ptr<Window>& window() const { return window_; }

  /// The same for the window that shows `view`, if one does.
  void bringTo(const View& view);

  /// What a "✕" on the spinner and on progress does, and Escape while the mask takes input. At first there is no "✕".
  void setOnCancel(std::function<void()> onCancel) { onCancel_ = std::move(onCancel); }

  /// A line under the spinner and under progress, such as the name of what is on its way; at first there is none.
  void setDetail(std::string detail) { detail_ = std::move(detail); }
  const std::string& detail() const { return detail_; }

  /// A spinner without an end.
  virtual void show() = 0;

  /// `fraction` from 0 to 1 as a ring, with `status` under it.
  virtual void showProgress(float fraction, const std::string& status) = 0;

  /// An information mark with `status`, announced to screen readers.
  virtual void showInfo(const std::string& status) = 0;

  /// The same without the mask: what lies behind goes on taking input.
  virtual void showNotice(const std::string& status) = 0;

  virtual void dismiss() = 0;

  /// Has screen readers say what nothing shows. Messages, and progress now and then, they say by themselves.
  virtual void announce(const std::string& text) = 0;

  /// Makes an offer in a small bar at the top of its window, beside whatever the panel shows there, in place of an
  /// earlier one. It stays until nothing is offered, also after a button was pressed.
  virtual void offer(std::optional<OverlayOffer> offer) = 0;

  virtual void setMinimumSize(Size size) = 0;
  virtual void setStyle(OverlayStyle style) = 0;
  virtual void setMask(OverlayMask mask) = 0;

  /// Seconds after which a message goes away by itself; a spinner and progress stay until they are dismissed.
  virtual void setMaximumDismissTime(double seconds) = 0;

 protected:
  /// Where the panel belongs now; null without a window.
  std::shared_ptr<Window> shownIn(const Application& application) const { return shownIn(application, window_); }
  ORIVEX_API static std::shared_ptr<Window> shownIn(const Application& application,
                                                    const std::weak_ptr<Window>& window);

  const std::function<void()>& onCancel() const { return onCancel_; }

 private:
  std::weak_ptr<Window> window_;
  std::function<void()> onCancel_;
  std::string detail_;
};

}  // namespace orivex

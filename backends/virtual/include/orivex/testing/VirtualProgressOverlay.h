#pragma once

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::testing {

/// A panel that is only remembered: what it shows, and what it showed when.
class VirtualProgressOverlay final : public ProgressOverlay {
 public:
  enum class Kind { spinner, progress, info };

  struct Panel {
    Kind kind = Kind::spinner;
    std::string status;
    float fraction = 0;  ///< Of a progress panel.
    bool operator==(const Panel&) const = default;
  };

  enum class Event { shown, dismissed, expired };

  /// One change of what is shown.
  struct Entry {
    double time = 0;  ///< Of the queue, in seconds.
    Event event = Event::shown;
    Panel panel;  ///< What came, or what went.
    bool operator==(const Entry&) const = default;
  };

  VirtualProgressOverlay(MainQueue& queue, const Application& application) : queue_(queue), application_(application) {}

  void show() override;
  void showProgress(float fraction, const std::string& status) override;
  void showInfo(const std::string& status) override;
  void showNotice(const std::string& status) override;
  void dismiss() override;
  void announce(const std::string& text) override;
  void offer(std::optional<OverlayOffer> offer) override;
  void setMinimumSize(Size size) override { minimumSize_ = size; }
  void setStyle(OverlayStyle style) override { style_ = style; }
  void setMask(OverlayMask mask) override { mask_ = mask; }
  void setMaximumDismissTime(double seconds) override { maximumDismissTime_ = seconds; }

  /// Nothing while no panel is up.
  const std::optional<Panel>& shown() const { return shown_; }

  /// The window over which the last panel came up; null when it is gone.
  std::shared_ptr<Window> shownOver() const { return shownOver_.lock(); }

  /// Whether the panel has a "✕", and the visitor's press on it.
  bool canBeCancelled() const { return shown_ && shown_->kind != Kind::info && onCancel(); }
  void pressCancel() const;

  /// What is offered in a bar; nothing without one, or without its window.
  const std::optional<OverlayOffer>& offered() const { return offered_; }

  /// What screen readers were told besides what showed.
  const std::vector<std::string>& announced() const { return announced_; }

  /// Whether a mask keeps the visitor from what lies behind the panel that is up.
  bool blocksInput() const { return shown_ && shownMask_ == OverlayMask::black; }

  /// Every change since the start, the oldest first. A dismissal with nothing shown changes nothing.
  const std::vector<Entry>& history() const { return history_; }
  void forgetHistory() { history_.clear(); }

  Size minimumSize() const { return minimumSize_; }
  OverlayStyle style() const { return style_; }
  OverlayMask mask() const { return mask_; }

  /// Infinite until it is set.
  double maximumDismissTime() const { return maximumDismissTime_; }

 private:
  void put(Panel panel, OverlayMask mask);
  void take(Event event);

  MainQueue& queue_;
  const Application& application_;
  std::optional<Panel> shown_;
  std::optional<OverlayOffer> offered_;
  std::weak_ptr<Window> shownOver_;
  OverlayMask shownMask_ = OverlayMask::none;
  std::vector<Entry> history_;
  std::vector<std::string> announced_;
  Size minimumSize_;
  OverlayStyle style_ = OverlayStyle::light;
  OverlayMask mask_ = OverlayMask::none;
  double maximumDismissTime_ = std::numeric_limits<double>::infinity();
  int showings_ = 0;
  Alive alive_;
};

}  // namespace orivex::testing

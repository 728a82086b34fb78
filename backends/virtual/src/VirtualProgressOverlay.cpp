#include "orivex/testing/VirtualProgressOverlay.h"

#include <cmath>
#include <utility>

#include "orivex/platform/ui/Window.h"
#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {

void VirtualProgressOverlay::show() {
  put({Kind::spinner, {}, 0}, mask_);
}

void VirtualProgressOverlay::showProgress(float fraction, const std::string& status) {
  put({Kind::progress, status, fraction}, mask_);
}

void VirtualProgressOverlay::showInfo(const std::string& status) {
  put({Kind::info, status, 0}, mask_);
}

void VirtualProgressOverlay::showNotice(const std::string& status) {
  put({Kind::info, status, 0}, OverlayMask::none);
}

void VirtualProgressOverlay::dismiss() {
  requireMainThread(queue_, "ProgressOverlay::dismiss");
  take(Event::dismissed);
}

void VirtualProgressOverlay::announce(const std::string& text) {
  requireMainThread(queue_, "ProgressOverlay::announce");
  if (shownIn(application_)) announced_.push_back(text);
}

void VirtualProgressOverlay::offer(std::optional<OverlayOffer> offer) {
  requireMainThread(queue_, "ProgressOverlay::offer");
  offered_ = offer && shownIn(application_, offer->window) ? std::move(offer) : std::nullopt;
}

void VirtualProgressOverlay::pressCancel() const {
  if (!canBeCancelled()) return;
  const auto act = onCancel();
  act();
}

void VirtualProgressOverlay::put(Panel panel, OverlayMask mask) {
  requireMainThread(queue_, "ProgressOverlay::show");
  const auto over = shownIn(application_);
  if (!over) return;
  shownOver_ = over;
  shownMask_ = mask;
  shown_ = std::move(panel);
  history_.push_back({queue_.now(), Event::shown, *shown_});
  const int showing = ++showings_;
  if (shown_->kind != Kind::info || !std::isfinite(maximumDismissTime_)) return;
  queue_.asyncAfter(maximumDismissTime_, alive_.guard([this, showing] {
    if (showing == showings_) take(Event::expired);
  }));
}

void VirtualProgressOverlay::take(Event event) {
  if (!shown_) return;
  history_.push_back({queue_.now(), event, *std::exchange(shown_, std::nullopt)});
}

}  // namespace orivex::testing

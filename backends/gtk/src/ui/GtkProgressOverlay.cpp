#include "GtkProgressOverlay.h"

#include <utility>

#include "GtkApplicationPort.h"

namespace orivex::gtk {

GtkProgressOverlay::GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application)
    : mainQueue_(mainQueue), application_(application) {}

GtkProgressOverlay::~GtkProgressOverlay() = default;

GtkOverlay* GtkProgressOverlay::overlayOf(const std::shared_ptr<Window>& window) const {
  auto* const host = window ? application_.find(*window->contentView()) : nullptr;
  return host ? host->overlay() : nullptr;
}

OverlayPanel* GtkProgressOverlay::panel() {
  limit_.reset();
  auto* const over = overlayOf(shownIn(application_));
  if (!over) {
    panel_.reset();
  } else if (!panel_ || !panel_->isOver(over)) {
    panel_ = std::make_unique<OverlayPanel>(over);
  }
  return panel_.get();
}

void GtkProgressOverlay::show() {
  if (auto* const shown = panel()) shown->showSpinner(look_, giveUp());
  raiseBar();
}

void GtkProgressOverlay::showProgress(float fraction, const std::string& status) {
  if (auto* const shown = panel()) shown->showRing(look_, fraction, status, giveUp());
  raiseBar();
}

void GtkProgressOverlay::showInfo(const std::string& status) {
  showMessage(look_, status);
}

void GtkProgressOverlay::showNotice(const std::string& status) {
  auto look = look_;
  look.mask = OverlayMask::none;
  showMessage(look, status);
}

void GtkProgressOverlay::showMessage(const OverlayLook& look, const std::string& status) {
  if (auto* const shown = panel()) shown->showInfo(look, status);
  raiseBar();
  if (maximumSeconds_ > 0) limit_ = mainQueue_.repeat(maximumSeconds_, [this] { dismiss(); });
}

// A panel that comes up covers it.
void GtkProgressOverlay::raiseBar() {
  if (bar_) bar_->raise();
}

void GtkProgressOverlay::dismiss() {
  limit_.reset();
  if (panel_) panel_->dismiss();
}

void GtkProgressOverlay::offer(std::optional<OverlayOffer> offer) {
  auto* const over = offer ? overlayOf(shownIn(application_, offer->window)) : nullptr;
  bar_ = over ? std::make_unique<OverlayBar>(over, *offer) : nullptr;
}

}  // namespace orivex::gtk

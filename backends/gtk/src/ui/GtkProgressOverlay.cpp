#include "GtkProgressOverlay.h"

#include "GtkApplicationPort.h"

namespace orivex::gtk {

GtkProgressOverlay::GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application)
    : mainQueue_(mainQueue), application_(application) {}

GtkProgressOverlay::~GtkProgressOverlay() = default;

OverlayPanel* GtkProgressOverlay::panel() {
  limit_.reset();
  const auto window = shownIn(application_);
  auto* const host = window ? application_.find(*window->contentView()) : nullptr;
  if (!host) {
    panel_.reset();
  } else if (!panel_ || !panel_->isOver(host->overlay())) {
    panel_ = std::make_unique<OverlayPanel>(host->overlay());
  }
  return panel_.get();
}

void GtkProgressOverlay::show() {
  if (auto* const shown = panel()) shown->showSpinner(look_);
}

void GtkProgressOverlay::showProgress(float fraction, const std::string& status) {
  if (auto* const shown = panel()) shown->showRing(look_, fraction, status);
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
  if (maximumSeconds_ > 0) limit_ = mainQueue_.repeat(maximumSeconds_, [this] { dismiss(); });
}

void GtkProgressOverlay::dismiss() {
  limit_.reset();
  if (panel_) panel_->dismiss();
}

}  // namespace orivex::gtk

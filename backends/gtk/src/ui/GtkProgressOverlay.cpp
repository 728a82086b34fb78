#include "GtkProgressOverlay.h"

#include "GtkApplicationPort.h"

namespace orivex::gtk {

GtkProgressOverlay::GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application)
    : mainQueue_(mainQueue), application_(application) {}

GtkProgressOverlay::~GtkProgressOverlay() = default;

OverlayPanel* GtkProgressOverlay::panel() {
  auto* const front = application_.frontWindow();
  if (!front) {
    panel_.reset();
  } else if (!panel_ || !panel_->isOver(front->overlay())) {
    panel_ = std::make_unique<OverlayPanel>(front->overlay());
  }
  restartLimit();
  return panel_.get();
}

void GtkProgressOverlay::restartLimit() {
  limit_.reset();
  if (maximumSeconds_ > 0) limit_ = mainQueue_.repeat(maximumSeconds_, [this] { dismiss(); });
}

void GtkProgressOverlay::show() {
  if (auto* const shown = panel()) shown->showSpinner(look_);
}

void GtkProgressOverlay::showProgress(float fraction, const std::string& status) {
  if (auto* const shown = panel()) shown->showRing(look_, fraction, status);
}

void GtkProgressOverlay::showInfo(const std::string& status) {
  if (auto* const shown = panel()) shown->showInfo(look_, status);
}

void GtkProgressOverlay::dismiss() {
  limit_.reset();
  if (panel_) panel_->dismiss();
}

}  // namespace orivex::gtk

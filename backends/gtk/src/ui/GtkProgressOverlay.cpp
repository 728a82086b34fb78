#include "GtkProgressOverlay.h"

#include "GtkApplicationPort.h"
#include "OverlayPanel.h"

namespace orivex::gtk {

GtkProgressOverlay::GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application)
    : mainQueue_(mainQueue), application_(application) {}

GtkProgressOverlay::~GtkProgressOverlay() = default;

OverlayPanel* GtkProgressOverlay::panel() {
  auto* const front = application_.frontWindow();
  if (!front) {
    panel_.reset();
  } else if (!panel_ || !panel_->isOver(front->overlay())) {
    panel_ = std::make_unique<OverlayPanel>(front->overlay(), minimumSize_, style_, mask_);
  }
  restartLimit();
  return panel_.get();
}

void GtkProgressOverlay::restartLimit() {
  limit_.reset();
  if (maximumSeconds_ > 0) limit_ = mainQueue_.repeat(maximumSeconds_, [this] { dismiss(); });
}

void GtkProgressOverlay::show() {
  if (auto* const shown = panel()) shown->showSpinner();
}

void GtkProgressOverlay::showProgress(float fraction, const std::string& status) {
  if (auto* const shown = panel()) shown->showRing(fraction, status);
}

void GtkProgressOverlay::showInfo(const std::string& status) {
  if (auto* const shown = panel()) shown->showInfo(status);
}

void GtkProgressOverlay::dismiss() {
  limit_.reset();
  panel_.reset();
}

}  // namespace orivex::gtk

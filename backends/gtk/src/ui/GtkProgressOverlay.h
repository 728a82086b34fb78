#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OverlayBar.h"
#include "OverlayPanel.h"

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

class GtkApplicationPort;

/// The panel, and the bar of an offer, over attached windows.
class GtkProgressOverlay final : public ProgressOverlay {
 public:
  GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application);
  ~GtkProgressOverlay() override;

  void show() override;
  void showProgress(float fraction, const std::string& status) override;
  void showInfo(const std::string& status) override;
  void showNotice(const std::string& status) override;
  void dismiss() override;
  void offer(std::optional<OverlayOffer> offer) override;
  void setMinimumSize(Size size) override { look_.minimumSize = size; }
  void setStyle(OverlayStyle style) override { look_.style = style; }
  void setMask(OverlayMask mask) override { look_.mask = mask; }
  void setMaximumDismissTime(double seconds) override { maximumSeconds_ = seconds; }

 private:
  /// The panel over the window in which it belongs now; null without a window.
  OverlayPanel* panel();
  GtkOverlay* overlayOf(const std::shared_ptr<Window>& window) const;
  void showMessage(const OverlayLook& look, const std::string& status);
  void raiseBar();

  MainQueue& mainQueue_;
  const GtkApplicationPort& application_;
  std::unique_ptr<OverlayPanel> panel_;
  std::unique_ptr<OverlayBar> bar_;
  std::unique_ptr<Timer> limit_;
  OverlayLook look_;  // as it was set last; each call shows it
  double maximumSeconds_ = 0;
};

}  // namespace orivex::gtk

#pragma once

#include <memory>
#include <string>

#include "OverlayPanel.h"

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

class GtkApplicationPort;

/// The panel over one of the attached windows.
class GtkProgressOverlay final : public ProgressOverlay {
 public:
  GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application);
  ~GtkProgressOverlay() override;

  void show() override;
  void showProgress(float fraction, const std::string& status) override;
  void showInfo(const std::string& status) override;
  void showNotice(const std::string& status) override;
  void dismiss() override;
  void setMinimumSize(Size size) override { look_.minimumSize = size; }
  void setStyle(OverlayStyle style) override { look_.style = style; }
  void setMask(OverlayMask mask) override { look_.mask = mask; }
  void setMaximumDismissTime(double seconds) override { maximumSeconds_ = seconds; }

 private:
  /// The panel over the window in which it belongs now; null without a window.
  OverlayPanel* panel();
  void showMessage(const OverlayLook& look, const std::string& status);

  MainQueue& mainQueue_;
  const GtkApplicationPort& application_;
  std::unique_ptr<OverlayPanel> panel_;
  std::unique_ptr<Timer> limit_;
  OverlayLook look_;  // as it was set last; each call shows it
  double maximumSeconds_ = 0;
};

}  // namespace orivex::gtk

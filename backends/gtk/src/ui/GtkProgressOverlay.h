#pragma once

#include <memory>
#include <optional>
#include <string>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "OverlayPanel.h"

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"

namespace orivex::gtk {

class GtkApplicationPort;

/// The panel, and the bar of an offer (a text, "重试" and "✕") at the top, over attached windows.
class GtkProgressOverlay final : public ProgressOverlay {
 public:
  GtkProgressOverlay(MainQueue& mainQueue, const GtkApplicationPort& application)
      : mainQueue_(mainQueue), application_(application) {}
  ~GtkProgressOverlay() override;

  void show() override;
  void showProgress(float fraction, const std::string& status) override;
  void showInfo(const std::string& status) override;
  void showNotice(const std::string& status) override;
  void dismiss() override;
  void announce(const std::string& text) override;
  void offer(std::optional<OverlayOffer> offer) override;
  void setMinimumSize(Size size) override { appearance_.minimumSize = size; }
  void setStyle(OverlayStyle style) override { appearance_.style = style; }
  void setMask(OverlayMask mask) override { appearance_.mask = mask; }
  void setMaximumDismissTime(double seconds) override { maximumSeconds_ = seconds; }

 private:
  /// The panel over the window in which it belongs now; null without a window.
  OverlayPanel* panel();
  GtkOverlay* overlayOf(const std::shared_ptr<Window>& window) const;
  void showMessage(const OverlayAppearance& appearance, const std::string& status);
  GtkWidget* barNew(const OverlayOffer& offer);
  void raiseBar();
  void removeBar();

  MainQueue& mainQueue_;
  const GtkApplicationPort& application_;
  std::unique_ptr<OverlayPanel> panel_;
  GRef<GtkWidget> bar_;  // null without an offer
  SignalConnections barClicked_;
  std::unique_ptr<Timer> limit_;
  OverlayAppearance appearance_;  // as it was set last; each call shows it
  double maximumSeconds_ = 0;
};

}  // namespace orivex::gtk

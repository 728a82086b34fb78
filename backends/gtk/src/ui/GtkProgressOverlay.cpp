#include "GtkProgressOverlay.h"

#include <utility>

#include "Announcement.h"
#include "GtkApplicationPort.h"
#include "Widgets.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

// The bar begins under the title bars of hosts and pages.
constexpr const char* css = R"css(
.orivex-offer { background-color: rgba(28, 28, 30, 0.94); color: white; border-radius: 12px; padding: 4px 4px 4px 14px; }
.orivex-offer { margin: 56px 16px 0 16px; }
.orivex-offer:dir(rtl) { padding: 4px 14px 4px 4px; }
.orivex-offer button { min-height: 36px; color: inherit; outline-color: white; }
)css";

}  // namespace

GtkProgressOverlay::~GtkProgressOverlay() {
  removeBar();
}

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
  if (auto* const shown = panel()) shown->showSpinner(appearance_, detail(), onCancel());
  raiseBar();
}

void GtkProgressOverlay::showProgress(float fraction, const std::string& status) {
  if (auto* const shown = panel()) shown->showRing(appearance_, fraction, status, detail(), onCancel());
  raiseBar();
}

void GtkProgressOverlay::showInfo(const std::string& status) {
  showMessage(appearance_, status);
}

void GtkProgressOverlay::showNotice(const std::string& status) {
  auto appearance = appearance_;
  appearance.mask = OverlayMask::none;
  showMessage(appearance, status);
}

void GtkProgressOverlay::showMessage(const OverlayAppearance& appearance, const std::string& status) {
  if (auto* const shown = panel()) shown->showInfo(appearance, status);
  raiseBar();
  if (maximumSeconds_ > 0) limit_ = mainQueue_.repeat(maximumSeconds_, [this] { dismiss(); });
}

void GtkProgressOverlay::dismiss() {
  limit_.reset();
  if (panel_) panel_->dismiss();
}

void GtkProgressOverlay::announce(const std::string& text) {
  if (auto* const over = overlayOf(shownIn(application_))) gtk::announce(GTK_WIDGET(over), text);
}

void GtkProgressOverlay::offer(std::optional<OverlayOffer> offer) {
  removeBar();
  auto* const over = offer ? overlayOf(shownIn(application_, offer->window)) : nullptr;
  if (!over) return;
  installStyle(css);
  bar_ = GRef<GtkWidget>::sink(barNew(*offer));
  gtk_overlay_add_overlay(over, bar_.get());
  gtk::announce(bar_.get(), offer->status);
}

GtkWidget* GtkProgressOverlay::barNew(const OverlayOffer& offer) {
  GtkWidget* const label = gtk_label_new(offer.status.c_str());
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_natural_wrap_mode(GTK_LABEL(label), GTK_NATURAL_WRAP_NONE);  // one line where there is room
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  GtkWidget* const retry = styled(gtk_button_new_with_label(tr("重试")), "flat");
  gtk_widget_set_name(retry, "overlay-retry");
  GtkWidget* const drop = styled(gtk_button_new_from_icon_name("window-close-symbolic"), "flat");
  setAccessibleLabel(drop, tr("不再发送"));
  // Either may end this bar.
  if (offer.retry) barClicked_.add(retry, "clicked", [act = offer.retry] { act(); });
  if (offer.drop) barClicked_.add(drop, "clicked", [act = offer.drop] { act(); });
  GtkWidget* const bar = styled(boxNew(GTK_ORIENTATION_HORIZONTAL, 6, {label, retry, drop}), "orivex-offer");
  gtk_widget_set_halign(bar, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(bar, GTK_ALIGN_START);
  return bar;
}

// A panel that comes up covers it.
void GtkProgressOverlay::raiseBar() {
  auto* const parent = bar_ ? gtk_widget_get_parent(bar_.get()) : nullptr;
  if (parent && gtk_widget_get_next_sibling(bar_.get())) gtk_widget_insert_before(bar_.get(), parent, nullptr);
}

void GtkProgressOverlay::removeBar() {
  barClicked_.disconnect();
  const auto bar = std::exchange(bar_, nullptr);
  auto* const parent = bar ? gtk_widget_get_parent(bar.get()) : nullptr;
  if (parent) gtk_overlay_remove_overlay(GTK_OVERLAY(parent), bar.get());
}

}  // namespace orivex::gtk

#include "OverlayBar.h"

#include "StyleSheet.h"
#include "Widgets.h"

namespace orivex::gtk {
namespace {

// Points. Under the title bars of hosts and pages.
constexpr int gapAbove = 56;
constexpr int gapBeside = 16;
constexpr int spacing = 6;

constexpr const char* css = R"css(
.orivex-offer { background-color: rgba(28, 28, 30, 0.94); color: white; border-radius: 12px; padding: 4px 4px 4px 14px; }
.orivex-offer button { min-height: 36px; color: inherit; }
)css";

}  // namespace

OverlayBar::OverlayBar(GtkOverlay* parent, const OverlayOffer& offer) {
  installStyle(css);
  GtkWidget* const label = gtk_label_new(offer.status.c_str());
  gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
  GtkWidget* const retry = styled(gtk_button_new_with_label("重试"), "flat");
  gtk_widget_set_name(retry, "overlay-retry");
  GtkWidget* const drop = styled(gtk_button_new_from_icon_name("window-close-symbolic"), "flat");
  setAccessibleLabel(drop, "不再发送");
  // Either may end this bar.
  if (offer.retry) connections_.add(retry, "clicked", [act = offer.retry] { act(); });
  if (offer.drop) connections_.add(drop, "clicked", [act = offer.drop] { act(); });

  GtkWidget* const bar = boxNew(GTK_ORIENTATION_HORIZONTAL, spacing, {label, retry, drop});
  bar_ = GRef<GtkWidget>::sink(styled(bar, "orivex-offer"));
  gtk_widget_set_halign(bar_.get(), GTK_ALIGN_CENTER);
  gtk_widget_set_valign(bar_.get(), GTK_ALIGN_START);
  gtk_widget_set_margin_top(bar_.get(), gapAbove);
  gtk_widget_set_margin_start(bar_.get(), gapBeside);
  gtk_widget_set_margin_end(bar_.get(), gapBeside);
  gtk_overlay_add_overlay(parent, bar_.get());
}

OverlayBar::~OverlayBar() {
  if (auto* const parent = gtk_widget_get_parent(bar_.get())) {
    gtk_overlay_remove_overlay(GTK_OVERLAY(parent), bar_.get());
  }
}

void OverlayBar::raise() {
  auto* const parent = gtk_widget_get_parent(bar_.get());
  if (parent && gtk_widget_get_next_sibling(bar_.get())) gtk_widget_insert_before(bar_.get(), parent, nullptr);
}

}  // namespace orivex::gtk

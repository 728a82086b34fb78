#include "OverlayBar.h"

#include <utility>

#include "StyleSheet.h"

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

GtkWidget* flat(GtkWidget* button) {
  gtk_widget_add_css_class(button, "flat");
  return button;
}

}  // namespace

OverlayBar::OverlayBar(GtkOverlay* parent, OverlayOffer offer)
    : offer_(std::move(offer)), bar_(GRef<GtkWidget>::sink(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, spacing))) {
  static const bool styled = (installStyle(css), true);
  static_cast<void>(styled);
  gtk_widget_add_css_class(bar_.get(), "orivex-offer");
  gtk_widget_set_halign(bar_.get(), GTK_ALIGN_CENTER);
  gtk_widget_set_valign(bar_.get(), GTK_ALIGN_START);
  gtk_widget_set_margin_top(bar_.get(), gapAbove);
  gtk_widget_set_margin_start(bar_.get(), gapBeside);
  gtk_widget_set_margin_end(bar_.get(), gapBeside);

  GtkWidget* const label = gtk_label_new(offer_.status.c_str());
  gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
  GtkWidget* const retry = flat(gtk_button_new_with_label("重试"));
  gtk_widget_set_name(retry, "overlay-retry");
  GtkWidget* const drop = flat(gtk_button_new_from_icon_name("window-close-symbolic"));
  gtk_accessible_update_property(GTK_ACCESSIBLE(drop), GTK_ACCESSIBLE_PROPERTY_LABEL, "不再发送", -1);
  for (auto* const part : {label, retry, drop}) gtk_box_append(GTK_BOX(bar_.get()), part);
  retryPressed_ = SignalConnection::connect<&OverlayBar::retryPressed>(retry, "clicked", this);
  dropPressed_ = SignalConnection::connect<&OverlayBar::dropPressed>(drop, "clicked", this);
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

// Either may end this bar.
void OverlayBar::retryPressed(GtkButton* /*retry*/) {
  if (const auto act = offer_.retry) act();
}

void OverlayBar::dropPressed(GtkButton* /*drop*/) {
  if (const auto act = offer_.drop) act();
}

}  // namespace orivex::gtk

#include "OverlayPanel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Compatibility.h"
#include "StyleSheet.h"
#include "Widgets.h"

namespace orivex::gtk {
namespace {

// Points.
constexpr int padding = 20;
constexpr int spacing = 14;
constexpr int gapToWindow = 24;

constexpr int textWidth = 22;     // characters before the text wraps
constexpr double fadeTime = 150;  // milliseconds from nothing to everything

// Colours of the dark and the light panel; the text keeps a contrast of more than 7 to 1 on both.
constexpr const char* css = R"css(
.orivex-mask.black { background-color: rgba(0, 0, 0, 0.4); }
.orivex-panel { border-radius: 16px; padding: 20px; }
.orivex-panel.dark { background-color: rgba(28, 28, 30, 0.94); color: white; }
.orivex-panel.light { background-color: rgba(250, 250, 250, 0.96); color: #1c1c1e; }
.orivex-panel label { font-weight: 500; }
.orivex-panel button { min-width: 20px; min-height: 20px; padding: 10px; margin: -18px -18px 0 0; color: inherit; }
)css";

constexpr const char* tallestLine = "国g😀";  // as tall as a line gets: each script has a font of its own
constexpr const char* spokenSpinner = "请稍候";

void setClass(GtkWidget* widget, const char* name, bool present) {
  (present ? gtk_widget_add_css_class : gtk_widget_remove_css_class)(widget, name);
}

}  // namespace

OverlayPanel::OverlayPanel(GtkOverlay* parent) : parent_(parent) {
  installStyle(css);
  build();
  destroyed_ = SignalConnection::connect(parent_, "destroy", [this] {
    keyPressed_.disconnect();
    keys_ = nullptr;
    parent_ = nullptr;
  });
}

OverlayPanel::~OverlayPanel() {
  faded_.disconnect();
  destroyed_.disconnect();
  takeInput(false);
  if (parent_ && gtk_widget_get_parent(mask_.get())) gtk_overlay_remove_overlay(parent_, mask_.get());
}

void OverlayPanel::build() {
  panel_ = GTK_WIDGET(g_object_new(GTK_TYPE_OVERLAY, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT, nullptr));
  gtk_widget_add_css_class(panel_, "orivex-panel");
  gtk_widget_set_halign(panel_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(panel_, GTK_ALIGN_CENTER);
  gtk_widget_set_vexpand(panel_, TRUE);
  gtk_widget_set_margin_start(panel_, gapToWindow);
  gtk_widget_set_margin_end(panel_, gapToWindow);
  mask_ = GRef<GtkWidget>::sink(styled(boxNew(GTK_ORIENTATION_VERTICAL, 0, {panel_}), "orivex-mask"));

  gtk_widget_set_vexpand(indicator_.widget(), TRUE);
  label_ = gtk_label_new(nullptr);
  gtk_widget_set_name(label_, "overlay-status");
  gtk_label_set_wrap(GTK_LABEL(label_), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label_), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_ellipsize(GTK_LABEL(label_), PANGO_ELLIPSIZE_END);
  gtk_label_set_max_width_chars(GTK_LABEL(label_), textWidth);
  gtk_label_set_justify(GTK_LABEL(label_), GTK_JUSTIFY_CENTER);
  gtk_overlay_set_child(GTK_OVERLAY(panel_), boxNew(GTK_ORIENTATION_VERTICAL, spacing, {indicator_.widget(), label_}));

  close_ = styled(styled(gtk_button_new_from_icon_name("window-close-symbolic"), "flat"), "circular");
  gtk_widget_set_focusable(close_, FALSE);  // the focus stays in the page
  gtk_widget_set_halign(close_, GTK_ALIGN_END);
  gtk_widget_set_valign(close_, GTK_ALIGN_START);
  setAccessibleLabel(close_, "取消上传");
  gtk_overlay_add_overlay(GTK_OVERLAY(panel_), close_);
  closeClicked_ = SignalConnection::connect(close_, "clicked", [this] { cancel(); });
}

void OverlayPanel::showSpinner(const OverlayLook& look, std::function<void()> giveUp) {
  indicator_.showSpinner();
  appear(look, "", spokenSpinner, std::move(giveUp));
}

void OverlayPanel::showRing(const OverlayLook& look, float fraction, const std::string& status,
                            std::function<void()> giveUp) {
  indicator_.showRing(fraction);
  appear(look, status, status.c_str(), std::move(giveUp));
}

void OverlayPanel::showInfo(const OverlayLook& look, const std::string& status) {
  indicator_.showInformationMark();
  appear(look, status, status.c_str(), nullptr);
}

void OverlayPanel::appear(const OverlayLook& look, const std::string& status, const char* spoken,
                          std::function<void()> giveUp) {
  apply(look);
  giveUp_ = std::move(giveUp);
  gtk_widget_set_visible(close_, static_cast<bool>(giveUp_));
  gtk_label_set_text(GTK_LABEL(label_), status.c_str());
  gtk_label_set_lines(GTK_LABEL(label_), linesThatFit());
  gtk_widget_set_visible(label_, !status.empty());
  setAccessibleLabel(panel_, spoken);
  // A percentage comes many times with the same words.
  if (parent_ && (!shown_ || spoken_ != spoken)) announce(GTK_WIDGET(parent_), spoken);
  spoken_ = spoken;
  takeInput(look.mask == OverlayMask::black);
  if (shown_ || !parent_) return;
  shown_ = true;
  if (!gtk_widget_get_parent(mask_.get())) {
    gtk_widget_set_opacity(mask_.get(), 0);
    gtk_overlay_add_overlay(parent_, mask_.get());
  }
  fadeTo(1);
}

void OverlayPanel::apply(const OverlayLook& look) {
  setClass(mask_.get(), "black", look.mask == OverlayMask::black);
  setClass(panel_, "dark", look.style == OverlayStyle::dark);
  setClass(panel_, "light", look.style == OverlayStyle::light);
  gtk_widget_set_size_request(panel_, static_cast<int>(look.minimumSize.width),
                              static_cast<int>(look.minimumSize.height));
}

void OverlayPanel::dismiss() {
  if (!shown_) return;
  shown_ = false;
  giveUp_ = nullptr;
  takeInput(false);
  fadeTo(0);
}

// The keys are caught above the page instead of moving the focus: a page that lost it would close what is being
// entered, and one that is revealed meanwhile could not receive it.
void OverlayPanel::takeInput(bool taking) {
  gtk_widget_set_can_target(mask_.get(), taking);
  if (taking == static_cast<bool>(keys_) || !parent_) return;
  if (taking) {
    keys_ = GRef<GtkEventController>::share(gtk_event_controller_key_new());
    gtk_event_controller_set_propagation_phase(keys_.get(), GTK_PHASE_CAPTURE);
    keyPressed_ = SignalConnection::connect(keys_.get(), "key-pressed", [this](guint key) {
      if (key == GDK_KEY_Escape) cancel();
      return true;
    });
    gtk_widget_add_controller(GTK_WIDGET(parent_), keys_.get());
  } else {
    keyPressed_.disconnect();
    gtk_widget_remove_controller(GTK_WIDGET(parent_), keys_.get());
    keys_ = nullptr;
  }
}

void OverlayPanel::cancel() {
  if (const auto act = giveUp_) act();  // which may show something else
}

// A text too long for the window ends in an ellipsis instead of leaving it.
int OverlayPanel::linesThatFit() const {
  const auto line = GRef<PangoLayout>::adopt(gtk_widget_create_pango_layout(label_, tallestLine));
  int lineHeight = 0;
  pango_layout_get_pixel_size(line.get(), nullptr, &lineHeight);
  const int room =
      gtk_widget_get_height(GTK_WIDGET(parent_)) - 2 * (gapToWindow + padding) - spacing - OverlayIndicator::size;
  return std::max(1, room / std::max(lineHeight, 1));
}

// From wherever an earlier fade has come to; a visitor who asked for reduced motion gets the end at once.
void OverlayPanel::fadeTo(double opacity) {
  faded_.disconnect();
  if (fade_) adw_animation_pause(fade_.get());
  const double now = gtk_widget_get_opacity(mask_.get());
  auto* const target = adw_property_animation_target_new(G_OBJECT(mask_.get()), "opacity");
  fade_ = GRef<AdwAnimation>::adopt(adw_timed_animation_new(
      mask_.get(), now, opacity, static_cast<guint>(std::lround(fadeTime * std::abs(opacity - now))), target));
  faded_ = SignalConnection::connect(fade_.get(), "done", [this] {
    if (shown_ || !parent_) return;
    indicator_.rest();
    gtk_overlay_remove_overlay(parent_, mask_.get());
  });
  adw_animation_play(fade_.get());
}

}  // namespace orivex::gtk

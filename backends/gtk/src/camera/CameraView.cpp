#include "CameraView.h"

#include <cmath>
#include <utility>

#include "../ui/Announcement.h"
#include "../ui/Widgets.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr double spinnerDelay = 0.4;  // seconds; a camera that opens at once needs no sign
constexpr double noticeTime = 2;      // seconds

constexpr int margin = 12;         // points between buttons and edges
constexpr int rowWidth = 272;      // points for the shutter and, at its side, the switch
constexpr int roundIconSize = 22;  // points

// Sizes of texts are in pt, which grow with the text size that the visitor has chosen; px do not.
// White on black or on a veil that is dark enough to read on over any picture.
constexpr const char* css = R"css(
.orivex-camera { background-color: black; color: white; }
.orivex-camera button { min-width: 48px; min-height: 48px; padding: 0; border: none; box-shadow: none;
  background-image: none; background-color: rgba(0, 0, 0, 0.45); color: white; border-radius: 24px;
  outline-color: white; }
.orivex-camera button:hover { background-color: rgba(60, 60, 60, 0.6); }
.orivex-camera button:active { background-color: rgba(110, 110, 110, 0.7); }
.orivex-camera button.shutter { background-color: transparent; border-radius: 48px; }
.orivex-camera button.text { padding: 0 28px; font-size: 12.75pt; font-weight: 600; background-color: rgba(60, 60, 60, 0.85); }
.orivex-camera button.use { background-color: white; color: black; outline-color: black; }
.orivex-camera button.use:hover { background-color: #e6e6e6; }
.orivex-camera button.use:active { background-color: #c4c4c4; }
.orivex-camera .bottom { padding-top: 48px;
  background-image: linear-gradient(to bottom, rgba(0, 0, 0, 0), rgba(0, 0, 0, 0.5) 35%, rgba(0, 0, 0, 0.7)); }
.orivex-camera .hint { font-size: 10.5pt; text-shadow: 0 1px rgba(0, 0, 0, 0.8); }
.orivex-camera .clock { font-size: 12pt; font-weight: 600; font-feature-settings: "tnum"; padding: 6px 14px;
  border-radius: 16px; background-color: rgba(215, 0, 21, 0.9); }
.orivex-camera .notice { font-size: 12pt; padding: 12px 20px; border-radius: 22px; background-color: rgba(0, 0, 0, 0.7); }
)css";

GtkWidget* roundButton(const char* icon, const char* label) {
  GtkWidget* const button = gtk_button_new_from_icon_name(icon);
  gtk_image_set_pixel_size(GTK_IMAGE(gtk_button_get_child(GTK_BUTTON(button))), roundIconSize);
  gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
  setAccessibleLabel(button, label);
  return button;
}

GtkWidget* textButton(const char* label) {
  return styled(gtk_button_new_with_label(label), "text");
}

void wrap(GtkWidget* label) {
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
}

GtkWidget* hiddenLabel(const char* styleClass) {
  GtkWidget* const label = styled(gtk_label_new(nullptr), styleClass);
  wrap(label);
  gtk_widget_set_halign(label, GTK_ALIGN_CENTER);
  gtk_widget_set_visible(label, FALSE);
  return label;
}

void setMargins(GtkWidget* widget, int top, int bottom, int sides) {
  gtk_widget_set_margin_top(widget, top);
  gtk_widget_set_margin_bottom(widget, bottom);
  gtk_widget_set_margin_start(widget, sides);
  gtk_widget_set_margin_end(widget, sides);
}

}  // namespace

CameraView::CameraView(MainQueue& main, const EdgeInsets& insets, const HeldKeys::Keys& heldKeys,
                       const std::string& hint, Handlers handlers)
    : main_(main),
      handlers_(std::move(handlers)),
      shutter_(main, {handlers_.tapped, handlers_.held, handlers_.released}),
      root_(GRef<GtkWidget>::sink(gtk_overlay_new())) {
  installStyle(css);
  gtk_widget_add_css_class(root_.get(), "orivex-camera");

  gtk_widget_set_hexpand(picture_.widget(), TRUE);
  gtk_widget_set_vexpand(picture_.widget(), TRUE);
  gtk_overlay_set_child(GTK_OVERLAY(root_.get()), picture_.widget());

  gtk_widget_set_size_request(spinner_, 40, 40);
  gtk_widget_set_halign(spinner_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(spinner_, GTK_ALIGN_CENTER);
  gtk_overlay_add_overlay(GTK_OVERLAY(root_.get()), spinner_);
  buildBottom(insets, hint);
  buildTop(insets);

  auto* const keys = gtk_event_controller_key_new();
  gtk_widget_add_controller(root_.get(), keys);
  connections_.add(keys, "key-pressed", [this](guint key) { return keyPressed(key); });
  connections_.add(keys, "key-released", [this] { shutter_.keyReleased(); });
  // A key that is held from one step to the next must not answer there.
  heldKeys_ = std::make_unique<HeldKeys>(root_.get(), heldKeys, HeldKeys::Repeats::stop);
}

void CameraView::buildTop(const EdgeInsets& insets) {
  const int top = static_cast<int>(std::ceil(insets.top)) + margin;
  GtkWidget* const close = roundButton("window-close-symbolic", tr("关闭"));
  gtk_widget_set_halign(close, GTK_ALIGN_START);
  gtk_widget_set_valign(close, GTK_ALIGN_START);
  setMargins(close, top, 0, margin);
  connections_.add(close, "clicked", [this] { handlers_.close(); });
  gtk_overlay_add_overlay(GTK_OVERLAY(root_.get()), close);

  clock_ = hiddenLabel("clock");
  gtk_widget_set_valign(clock_, GTK_ALIGN_START);
  setMargins(clock_, top + margin / 2, 0, 0);
  gtk_overlay_add_overlay(GTK_OVERLAY(root_.get()), clock_);
}

void CameraView::buildBottom(const EdgeInsets& insets, const std::string& hint) {
  controls_ = gtk_stack_new();
  gtk_stack_add_titled(GTK_STACK(controls_), liveControls(hint), "live", tr("拍摄"));
  gtk_stack_add_titled(GTK_STACK(controls_), reviewControls(), "review", tr("预览"));
  setMargins(controls_, 0, static_cast<int>(std::ceil(insets.bottom)) + 2 * margin, 0);

  notice_ = hiddenLabel("notice");
  GtkWidget* const bottom = styled(boxNew(GTK_ORIENTATION_VERTICAL, margin, {notice_, controls_}), "bottom");
  gtk_widget_set_valign(bottom, GTK_ALIGN_END);
  gtk_overlay_add_overlay(GTK_OVERLAY(root_.get()), bottom);
}

GtkWidget* CameraView::liveControls(const std::string& hint) {
  switch_ = roundButton("emblem-synchronizing-symbolic", tr("切换摄像头"));
  connections_.add(switch_, "clicked", [this] { handlers_.switchCamera(); });
  setAccessibleLabel(shutter_.widget(), hint);
  GtkWidget* const row = gtk_center_box_new();
  gtk_center_box_set_center_widget(GTK_CENTER_BOX(row), shutter_.widget());
  gtk_center_box_set_end_widget(GTK_CENTER_BOX(row), switch_);
  gtk_widget_set_size_request(row, rowWidth, -1);
  gtk_widget_set_halign(row, GTK_ALIGN_CENTER);

  hint_ = styled(gtk_label_new(hint.c_str()), "hint");
  wrap(hint_);
  return boxNew(GTK_ORIENTATION_VERTICAL, margin, {hint_, row});
}

GtkWidget* CameraView::reviewControls() {
  GtkWidget* const retake = textButton(tr("重拍"));
  use_ = styled(textButton(tr("使用")), "use");
  gtk_widget_set_name(retake, "camera-retake");
  gtk_widget_set_name(use_, "camera-use");
  connections_.add(retake, "clicked", [this] { handlers_.retake(); });
  connections_.add(use_, "clicked", [this] { handlers_.use(); });
  GtkWidget* const row = gtk_center_box_new();
  gtk_widget_set_valign(row, GTK_ALIGN_END);
  setMargins(row, 0, margin, 2 * margin);
  gtk_center_box_set_start_widget(GTK_CENTER_BOX(row), retake);
  gtk_center_box_set_end_widget(GTK_CENTER_BOX(row), use_);
  return row;
}

void CameraView::showControls(const char* page, bool enabled) {
  gtk_stack_set_visible_child_name(GTK_STACK(controls_), page);
  gtk_widget_set_sensitive(switch_, enabled);
  gtk_widget_set_opacity(shutter_.widget(), enabled ? 1 : 0.4);
  gtk_widget_set_visible(clock_, FALSE);
  gtk_widget_set_opacity(hint_, enabled ? 1 : 0);
}

void CameraView::showSpinner(bool spins) {
  opening_ = spins;
  if (!spins) {
    gtk_spinner_stop(GTK_SPINNER(spinner_));
    return;
  }
  main_.asyncAfter(spinnerDelay, alive_.guard([this] {
    if (opening_) gtk_spinner_start(GTK_SPINNER(spinner_));
  }));
}

void CameraView::showOpening(bool canSwitch) {
  picture_.show(nullptr);
  shutter_.showIdle();
  showControls("live", false);
  gtk_widget_set_visible(switch_, canSwitch);
  gtk_widget_grab_focus(shutter_.widget());
  showSpinner(true);
}

void CameraView::showLive() {
  showSpinner(false);
  shutter_.showIdle();
  showControls("live", true);
}

void CameraView::showRecording(double seconds, double longest) {
  gtk_widget_set_visible(notice_, FALSE);
  gtk_widget_set_sensitive(switch_, FALSE);
  gtk_widget_set_opacity(hint_, 0);
  shutter_.showRecording(seconds / longest);
  const auto whole = static_cast<int>(seconds);
  const auto text = std::to_string(whole / 60) + (whole % 60 < 10 ? ":0" : ":") + std::to_string(whole % 60);
  gtk_label_set_text(GTK_LABEL(clock_), text.c_str());
  if (!gtk_widget_get_visible(clock_)) announce(clock_, tr("开始录制"));
  gtk_widget_set_visible(clock_, TRUE);
}

void CameraView::showWorking() {
  shutter_.showIdle();
  showControls("live", false);
  showSpinner(true);
}

void CameraView::showReview() {
  showSpinner(false);
  gtk_widget_set_visible(notice_, FALSE);
  showControls("review", false);
  gtk_widget_grab_focus(use_);
}

void CameraView::showNotice(const std::string& text) {
  gtk_label_set_text(GTK_LABEL(notice_), text.c_str());
  announce(notice_, text);
  gtk_widget_set_visible(notice_, TRUE);
  main_.asyncAfter(noticeTime, alive_.guard([this, number = ++notices_] {
    if (number == notices_) gtk_widget_set_visible(notice_, FALSE);
  }));
}

// What the focused button does not take.
bool CameraView::keyPressed(guint key) {
  if (key == GDK_KEY_Escape) {  // back by one step
    const bool isReview = g_str_equal(gtk_stack_get_visible_child_name(GTK_STACK(controls_)), "review");
    isReview ? handlers_.retake() : handlers_.close();
  }
  shutter_.keyPressed(key);
  // Nothing goes on to the screen below.
  return key != GDK_KEY_Tab && key != GDK_KEY_ISO_Left_Tab;
}

}  // namespace orivex::gtk

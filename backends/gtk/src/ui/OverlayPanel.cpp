#include "OverlayPanel.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "Announcement.h"
#include "Widgets.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

// Points.
constexpr int padding = 20;
constexpr int spacing = 14;
constexpr int gapToWindow = 24;
constexpr int indicatorSize = 44;
constexpr double lineWidth = 4;
constexpr double radius = (indicatorSize - lineWidth) / 2;

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
.orivex-panel button:dir(rtl) { margin: -18px 0 0 -18px; }
)css";

constexpr const char* tallestLine = "国g😀";  // as tall as a line gets: each script has a font of its own
constexpr const char* spokenSpinner = trLater("请稍候");

// What is still to come of the ring is dotted, so that it can be told by shape as well as by colour.
constexpr double trackDashes[] = {0.1, 7.75};

constexpr double fullTurn = 2 * std::numbers::pi;

void setClass(GtkWidget* widget, const char* name, bool present) {
  (present ? gtk_widget_add_css_class : gtk_widget_remove_css_class)(widget, name);
}

G_GNUC_BEGIN_IGNORE_DEPRECATIONS  // GTK 4.10 has another name for it
    void
    setTextColor(cairo_t* context, GtkWidget* widget) {
  GdkRGBA color;
  gtk_style_context_get_color(gtk_widget_get_style_context(widget), &color);
  gdk_cairo_set_source_rgba(context, &color);
}
G_GNUC_END_IGNORE_DEPRECATIONS

// Both draw around the origin.
void drawRing(cairo_t* context, double fraction) {
  constexpr double top = -fullTurn / 4;
  cairo_arc(context, 0, 0, radius, top, top + fullTurn);
  cairo_set_dash(context, trackDashes, 2, 0);
  cairo_stroke(context);
  cairo_set_dash(context, nullptr, 0, 0);
  cairo_arc(context, 0, 0, radius, top, top + fullTurn * fraction);
  cairo_stroke(context);
}

void drawInformationMark(cairo_t* context) {
  cairo_arc(context, 0, 0, radius, 0, fullTurn);
  cairo_stroke(context);
  cairo_move_to(context, 0, -radius * 0.05);
  cairo_line_to(context, 0, radius * 0.48);
  cairo_stroke(context);
  cairo_arc(context, 0, -radius * 0.42, lineWidth * 0.7, 0, fullTurn);
  cairo_fill(context);
}

}  // namespace

OverlayPanel::OverlayPanel(GtkOverlay* parent) : parent_(parent) {
  installStyle(css);
  build();
  connections_.add(parent_, "destroy", [this] {
    keyPressed_.disconnect();
    keys_ = nullptr;
    parent_ = nullptr;
  });
}

OverlayPanel::~OverlayPanel() {
  faded_.disconnect();
  connections_.disconnect();
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

  label_ = gtk_label_new(nullptr);
  gtk_widget_set_name(label_, "overlay-status");
  gtk_label_set_wrap(GTK_LABEL(label_), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label_), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_ellipsize(GTK_LABEL(label_), PANGO_ELLIPSIZE_END);
  gtk_label_set_max_width_chars(GTK_LABEL(label_), textWidth);
  gtk_label_set_justify(GTK_LABEL(label_), GTK_JUSTIFY_CENTER);
  detail_ = gtk_label_new(nullptr);
  gtk_label_set_ellipsize(GTK_LABEL(detail_), PANGO_ELLIPSIZE_MIDDLE);  // the ending tells what it is
  gtk_label_set_max_width_chars(GTK_LABEL(detail_), textWidth);
  gtk_overlay_set_child(GTK_OVERLAY(panel_),
                        boxNew(GTK_ORIENTATION_VERTICAL, spacing, {indicatorsNew(), label_, detail_}));

  close_ = styled(styled(gtk_button_new_from_icon_name("window-close-symbolic"), "flat"), "circular");
  gtk_widget_set_focusable(close_, FALSE);  // the focus stays in the page
  gtk_widget_set_halign(close_, GTK_ALIGN_END);
  gtk_widget_set_valign(close_, GTK_ALIGN_START);
  setAccessibleLabel(close_, tr("取消上传"));
  gtk_overlay_add_overlay(GTK_OVERLAY(panel_), close_);
  connections_.add(close_, "clicked", [this] { cancel(); });
}

GtkWidget* OverlayPanel::indicatorsNew() {
  spinner_ = gtk_spinner_new();
  gtk_widget_set_size_request(spinner_, indicatorSize, indicatorSize);
  setAccessibleLabel(spinner_, tr(spokenSpinner));
  ring_ = drawingNew(GTK_ACCESSIBLE_ROLE_PROGRESS_BAR);
  gtk_accessible_update_property(GTK_ACCESSIBLE(ring_), GTK_ACCESSIBLE_PROPERTY_LABEL, tr("进度"),
                                 GTK_ACCESSIBLE_PROPERTY_VALUE_MIN, 0.0, GTK_ACCESSIBLE_PROPERTY_VALUE_MAX, 100.0,
                                 GTK_ACCESSIBLE_PROPERTY_VALUE_NOW, 0.0, -1);
  informationMark_ = drawingNew(GTK_ACCESSIBLE_ROLE_PRESENTATION);
  indicators_ = gtk_stack_new();
  for (GtkWidget* indicator : {spinner_, ring_, informationMark_}) {
    gtk_stack_add_titled(GTK_STACK(indicators_), indicator, nullptr, tr("进度"));
  }
  gtk_widget_set_halign(indicators_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(indicators_, GTK_ALIGN_CENTER);
  gtk_widget_set_vexpand(indicators_, TRUE);
  return indicators_;
}

// The ring or the information mark.
GtkWidget* OverlayPanel::drawingNew(GtkAccessibleRole role) {
  auto* const drawing = GTK_WIDGET(g_object_new(GTK_TYPE_DRAWING_AREA, "accessible-role", role, nullptr));
  gtk_widget_set_size_request(drawing, indicatorSize, indicatorSize);
  const auto draw = [](GtkDrawingArea* area, cairo_t* context, int width, int height, gpointer data) noexcept {
    const auto& panel = *static_cast<const OverlayPanel*>(data);
    setTextColor(context, GTK_WIDGET(area));
    cairo_translate(context, width / 2.0, height / 2.0);
    cairo_set_line_width(context, lineWidth);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    GTK_WIDGET(area) == panel.ring_ ? drawRing(context, panel.fraction_) : drawInformationMark(context);
  };
  gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(drawing), draw, this, nullptr);
  return drawing;
}

void OverlayPanel::showSpinner(const OverlayAppearance& appearance, const std::string& detail,
                               std::function<void()> onCancel) {
  setDetail(detail);
  quarter_ = 0;
  appear(appearance, spinner_, "", tr(spokenSpinner), std::move(onCancel));
}

void OverlayPanel::showRing(const OverlayAppearance& appearance, float fraction, const std::string& status,
                            const std::string& detail, std::function<void()> onCancel) {
  setDetail(detail);
  setFraction(std::clamp(static_cast<double>(fraction), 0.0, 1.0));
  appear(appearance, ring_, status, status.c_str(), std::move(onCancel));
  const int before = std::exchange(quarter_, static_cast<int>(fraction_ * 4));
  if (parent_ && quarter_ > before) announce(GTK_WIDGET(parent_), status);
}

void OverlayPanel::showInfo(const OverlayAppearance& appearance, const std::string& status) {
  setDetail("");
  const bool isNew = !shown_ || status != gtk_label_get_text(GTK_LABEL(label_));
  appear(appearance, informationMark_, status, status.c_str(), nullptr);
  if (parent_ && isNew) announce(GTK_WIDGET(parent_), status);
}

void OverlayPanel::setDetail(const std::string& detail) {
  gtk_label_set_text(GTK_LABEL(detail_), detail.c_str());
  gtk_widget_set_visible(detail_, !detail.empty());
}

void OverlayPanel::setFraction(double fraction) {
  if (std::exchange(fraction_, fraction) == fraction) return;
  gtk_widget_queue_draw(ring_);
  gtk_accessible_update_property(GTK_ACCESSIBLE(ring_), GTK_ACCESSIBLE_PROPERTY_VALUE_NOW, fraction * 100, -1);
}

void OverlayPanel::appear(const OverlayAppearance& appearance, GtkWidget* indicator, const std::string& status,
                          const char* spoken, std::function<void()> onCancel) {
  apply(appearance);
  gtk_stack_set_visible_child(GTK_STACK(indicators_), indicator);
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), indicator == spinner_);
  onCancel_ = std::move(onCancel);
  gtk_widget_set_visible(close_, static_cast<bool>(onCancel_));
  gtk_label_set_text(GTK_LABEL(label_), status.c_str());
  gtk_label_set_lines(GTK_LABEL(label_), linesThatFit());
  gtk_widget_set_visible(label_, !status.empty());
  setAccessibleLabel(panel_, spoken);
  takeInput(appearance.mask == OverlayMask::black);
  if (shown_ || !parent_) return;
  shown_ = true;
  if (!gtk_widget_get_parent(mask_.get())) {
    gtk_widget_set_opacity(mask_.get(), 0);
    gtk_overlay_add_overlay(parent_, mask_.get());
  }
  fadeTo(1);
}

void OverlayPanel::apply(const OverlayAppearance& appearance) {
  setClass(mask_.get(), "black", appearance.mask == OverlayMask::black);
  setClass(panel_, "dark", appearance.style == OverlayStyle::dark);
  setClass(panel_, "light", appearance.style == OverlayStyle::light);
  gtk_widget_set_size_request(panel_, static_cast<int>(appearance.minimumSize.width),
                              static_cast<int>(appearance.minimumSize.height));
}

void OverlayPanel::dismiss() {
  if (!shown_) return;
  shown_ = false;
  onCancel_ = nullptr;
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
  if (const auto act = onCancel_) act();  // which may show something else
}

// A text too long for the window ends in an ellipsis instead of leaving it.
int OverlayPanel::linesThatFit() const {
  const auto line = GRef<PangoLayout>::adopt(gtk_widget_create_pango_layout(label_, tallestLine));
  int lineHeight = 0;
  pango_layout_get_pixel_size(line.get(), nullptr, &lineHeight);
  const int room = gtk_widget_get_height(GTK_WIDGET(parent_)) - 2 * (gapToWindow + padding) - spacing - indicatorSize;
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
    gtk_spinner_set_spinning(GTK_SPINNER(spinner_), FALSE);
    gtk_overlay_remove_overlay(parent_, mask_.get());
  });
  adw_animation_play(fade_.get());
}

}  // namespace orivex::gtk

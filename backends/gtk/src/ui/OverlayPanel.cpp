#include "OverlayPanel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orivex::gtk {
namespace {

// Points.
constexpr int indicatorSize = 44;
constexpr double lineWidth = 4;
constexpr double radius = (indicatorSize - lineWidth) / 2;

// What is still to come of the ring is dotted, so that it can be told by shape as well as by colour.
constexpr double trackDashes[] = {0.1, 7.75};

constexpr int textWidth = 22;  // characters before the text wraps

// Colours of the dark and the light panel; the text keeps a contrast of more than 7 to 1 on both.
constexpr const char* style = R"css(
.orivex-mask.black { background-color: rgba(0, 0, 0, 0.4); }
.orivex-panel { border-radius: 16px; padding: 20px; }
.orivex-panel.dark { background-color: rgba(28, 28, 30, 0.94); color: white; }
.orivex-panel.light { background-color: rgba(250, 250, 250, 0.96); color: #1c1c1e; }
.orivex-panel label { font-weight: 500; }
)css";

void installStyle() {
  static const bool installed = [] {
    const auto provider = GRef<GtkCssProvider>::adopt(gtk_css_provider_new());
    gtk_css_provider_load_from_data(provider.get(), style, -1);
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    return true;
  }();
  static_cast<void>(installed);
}

}  // namespace

OverlayPanel::OverlayPanel(GtkOverlay* parent, Size minimumSize, OverlayStyle overlayStyle, OverlayMask mask)
    : parent_(parent) {
  installStyle();
  mask_ = GRef<GtkWidget>::sink(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
  gtk_widget_add_css_class(mask_.get(), "orivex-mask");
  if (mask == OverlayMask::black) gtk_widget_add_css_class(mask_.get(), "black");
  gtk_widget_set_can_target(mask_.get(), mask == OverlayMask::black);

  GtkWidget* const box = GTK_WIDGET(g_object_new(GTK_TYPE_BOX, "orientation", GTK_ORIENTATION_VERTICAL, "spacing", 14,
                                                 "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT, nullptr));
  gtk_widget_add_css_class(box, "orivex-panel");
  gtk_widget_add_css_class(box, overlayStyle == OverlayStyle::dark ? "dark" : "light");
  gtk_widget_set_size_request(box, static_cast<int>(minimumSize.width), static_cast<int>(minimumSize.height));
  gtk_widget_set_halign(box, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(box, GTK_ALIGN_CENTER);
  gtk_widget_set_vexpand(box, TRUE);
  gtk_box_append(GTK_BOX(mask_.get()), box);

  buildIndicator();
  gtk_box_append(GTK_BOX(box), indicator_);
  label_ = gtk_label_new(nullptr);
  gtk_label_set_wrap(GTK_LABEL(label_), TRUE);
  gtk_label_set_max_width_chars(GTK_LABEL(label_), textWidth);
  gtk_label_set_justify(GTK_LABEL(label_), GTK_JUSTIFY_CENTER);
  gtk_box_append(GTK_BOX(box), label_);

  gtk_overlay_add_overlay(parent_, mask_.get());
  destroyed_ = SignalConnection::connect<&OverlayPanel::parentDestroyed>(parent_, "destroy", this);
}

OverlayPanel::~OverlayPanel() {
  destroyed_.disconnect();
  if (parent_) gtk_overlay_remove_overlay(parent_, mask_.get());
}

void OverlayPanel::buildIndicator() {
  spinner_ = gtk_spinner_new();
  gtk_widget_set_size_request(spinner_, indicatorSize, indicatorSize);
  ring_ = drawingNew<&OverlayPanel::drawRing>();
  indicator_ = gtk_stack_new();
  gtk_widget_set_halign(indicator_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(indicator_, GTK_ALIGN_CENTER);
  gtk_widget_set_vexpand(indicator_, TRUE);
  gtk_stack_add_named(GTK_STACK(indicator_), spinner_, "spinner");
  gtk_stack_add_named(GTK_STACK(indicator_), ring_, "ring");
  gtk_stack_add_named(GTK_STACK(indicator_), drawingNew<&OverlayPanel::drawInformationMark>(), "info");
}

template <auto draw>
GtkWidget* OverlayPanel::drawingNew() {
  GtkWidget* const drawing = gtk_drawing_area_new();
  gtk_widget_set_size_request(drawing, indicatorSize, indicatorSize);
  gtk_drawing_area_set_draw_func(
      GTK_DRAWING_AREA(drawing),
      [](GtkDrawingArea* area, cairo_t* context, int width, int height, gpointer panel) {
        GdkRGBA color;
        gtk_style_context_get_color(gtk_widget_get_style_context(GTK_WIDGET(area)), &color);
        gdk_cairo_set_source_rgba(context, &color);
        cairo_translate(context, width / 2.0, height / 2.0);
        cairo_set_line_width(context, lineWidth);
        cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
        (static_cast<const OverlayPanel*>(panel)->*draw)(context);
      },
      this, nullptr);
  return drawing;
}

// Both draw around the origin, in the text's colour.
void OverlayPanel::drawRing(cairo_t* context) const {
  constexpr double fullTurn = 2 * std::numbers::pi;
  constexpr double top = -std::numbers::pi / 2;
  cairo_arc(context, 0, 0, radius, top, top + fullTurn);
  cairo_set_dash(context, trackDashes, 2, 0);
  cairo_stroke(context);
  cairo_set_dash(context, nullptr, 0, 0);
  cairo_arc(context, 0, 0, radius, top, top + fullTurn * static_cast<double>(fraction_));
  cairo_stroke(context);
}

void OverlayPanel::drawInformationMark(cairo_t* context) const {
  cairo_arc(context, 0, 0, radius, 0, 2 * std::numbers::pi);
  cairo_stroke(context);
  cairo_move_to(context, 0, -radius * 0.05);
  cairo_line_to(context, 0, radius * 0.48);
  cairo_stroke(context);
  cairo_arc(context, 0, -radius * 0.42, lineWidth * 0.7, 0, 2 * std::numbers::pi);
  cairo_fill(context);
}

void OverlayPanel::show(const char* page, const std::string& status) {
  gtk_stack_set_visible_child_name(GTK_STACK(indicator_), page);
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), std::string_view(page) == "spinner");
  gtk_label_set_text(GTK_LABEL(label_), status.c_str());
  gtk_widget_set_visible(label_, !status.empty());
}

void OverlayPanel::showSpinner() {
  show("spinner", "");
}

void OverlayPanel::showRing(float fraction, const std::string& status) {
  fraction_ = std::clamp(fraction, 0.0F, 1.0F);
  gtk_widget_queue_draw(ring_);
  show("ring", status);
}

void OverlayPanel::showInfo(const std::string& status) {
  show("info", status);
}

void OverlayPanel::parentDestroyed(GtkWidget* /*parent*/) {
  parent_ = nullptr;
}

}  // namespace orivex::gtk

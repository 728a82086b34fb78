#include "OverlayIndicator.h"

#include <algorithm>
#include <numbers>

#include "../Contained.h"
#include "Compatibility.h"

namespace orivex::gtk {
namespace {

// Points.
constexpr double lineWidth = 4;
constexpr double radius = (OverlayIndicator::size - lineWidth) / 2;

// What is still to come of the ring is dotted, so that it can be told by shape as well as by colour.
constexpr double trackDashes[] = {0.1, 7.75};

}  // namespace

OverlayIndicator::OverlayIndicator()
    : stack_(GRef<GtkWidget>::sink(gtk_stack_new())),
      spinner_(gtk_spinner_new()),
      ring_(drawingNew<&OverlayIndicator::drawRing>(GTK_ACCESSIBLE_ROLE_PROGRESS_BAR)),
      mark_(drawingNew<&OverlayIndicator::drawInformationMark>(GTK_ACCESSIBLE_ROLE_PRESENTATION)) {
  gtk_widget_set_size_request(spinner_, size, size);
  // Without a name they would be called by their class.
  gtk_accessible_update_property(GTK_ACCESSIBLE(spinner_), GTK_ACCESSIBLE_PROPERTY_LABEL, "请稍候", -1);
  gtk_accessible_update_property(GTK_ACCESSIBLE(ring_), GTK_ACCESSIBLE_PROPERTY_LABEL, "进度",
                                 GTK_ACCESSIBLE_PROPERTY_VALUE_MIN, 0.0, GTK_ACCESSIBLE_PROPERTY_VALUE_MAX, 100.0,
                                 GTK_ACCESSIBLE_PROPERTY_VALUE_NOW, 0.0, -1);
  gtk_widget_set_halign(stack_.get(), GTK_ALIGN_CENTER);
  gtk_widget_set_valign(stack_.get(), GTK_ALIGN_CENTER);
  for (GtkWidget* page : {spinner_, ring_, mark_}) gtk_stack_add_child(GTK_STACK(stack_.get()), page);
}

template <auto draw>
GtkWidget* OverlayIndicator::drawingNew(GtkAccessibleRole role) {
  auto* const drawing = GTK_WIDGET(g_object_new(GTK_TYPE_DRAWING_AREA, "accessible-role", role, nullptr));
  gtk_widget_set_size_request(drawing, size, size);
  gtk_drawing_area_set_draw_func(
      GTK_DRAWING_AREA(drawing),
      [](GtkDrawingArea* area, cairo_t* context, int width, int height, gpointer indicator) noexcept {
        const auto color = foregroundOf(GTK_WIDGET(area));
        gdk_cairo_set_source_rgba(context, &color);
        cairo_translate(context, width / 2.0, height / 2.0);
        cairo_set_line_width(context, lineWidth);
        cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
        contained([&] { (static_cast<const OverlayIndicator*>(indicator)->*draw)(context); });
      },
      this, nullptr);
  return drawing;
}

// Both draw around the origin.
void OverlayIndicator::drawRing(cairo_t* context) const {
  constexpr double fullTurn = 2 * std::numbers::pi;
  constexpr double top = -std::numbers::pi / 2;
  cairo_arc(context, 0, 0, radius, top, top + fullTurn);
  cairo_set_dash(context, trackDashes, 2, 0);
  cairo_stroke(context);
  cairo_set_dash(context, nullptr, 0, 0);
  cairo_arc(context, 0, 0, radius, top, top + fullTurn * static_cast<double>(fraction_));
  cairo_stroke(context);
}

void OverlayIndicator::drawInformationMark(cairo_t* context) const {
  cairo_arc(context, 0, 0, radius, 0, 2 * std::numbers::pi);
  cairo_stroke(context);
  cairo_move_to(context, 0, -radius * 0.05);
  cairo_line_to(context, 0, radius * 0.48);
  cairo_stroke(context);
  cairo_arc(context, 0, -radius * 0.42, lineWidth * 0.7, 0, 2 * std::numbers::pi);
  cairo_fill(context);
}

void OverlayIndicator::showSpinner() {
  show(spinner_);
}

void OverlayIndicator::showRing(float fraction) {
  const float next = std::clamp(fraction, 0.0F, 1.0F);
  if (next != fraction_) {
    fraction_ = next;
    gtk_widget_queue_draw(ring_);
    gtk_accessible_update_property(GTK_ACCESSIBLE(ring_), GTK_ACCESSIBLE_PROPERTY_VALUE_NOW,
                                   static_cast<double>(next) * 100, -1);
  }
  show(ring_);
}

void OverlayIndicator::showInformationMark() {
  show(mark_);
}

void OverlayIndicator::rest() {
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), FALSE);
}

void OverlayIndicator::show(GtkWidget* page) {
  gtk_stack_set_visible_child(GTK_STACK(stack_.get()), page);
  gtk_spinner_set_spinning(GTK_SPINNER(spinner_), page == spinner_);
}

}  // namespace orivex::gtk

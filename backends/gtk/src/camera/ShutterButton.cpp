#include "ShutterButton.h"

#include <algorithm>
#include <numbers>
#include <utility>

#include "../Contained.h"

namespace orivex::gtk {
namespace {

constexpr double holdDelay = 0.35;  // seconds of a press after which it is no tap any more

// Points.
constexpr int size = 96;
constexpr double idleRing = 36;
constexpr double recordingRing = 44;
constexpr double ringWidth = 5;
constexpr double disc = 29;
constexpr double pressedDisc = 25;
constexpr double stopSide = 30;
constexpr double stopCorner = 7;

constexpr double fullTurn = 2 * std::numbers::pi;
constexpr double top = -std::numbers::pi / 2;

// Around the origin.
void circle(cairo_t* context, double radius) {
  cairo_arc(context, 0, 0, radius, 0, fullTurn);
}

// Takes the pointer away from a button, whose place in assistive technology stays.
void ignoreClicks(GtkWidget* button) {
  const auto controllers = GRef<GListModel>::adopt(gtk_widget_observe_controllers(button));
  for (guint i = 0; i < g_list_model_get_n_items(controllers.get()); ++i) {
    const auto controller = GRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(controllers.get(), i)));
    if (!GTK_IS_GESTURE_CLICK(controller.get())) continue;
    gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(controller.get()), GTK_PHASE_NONE);
  }
}

}  // namespace

ShutterButton::ShutterButton(MainQueue& main, Handlers handlers)
    : main_(main), handlers_(std::move(handlers)), button_(GRef<GtkWidget>::sink(gtk_button_new())) {
  gtk_widget_add_css_class(button_.get(), "shutter");
  gtk_widget_set_name(button_.get(), "camera-shutter");
  gtk_widget_set_halign(button_.get(), GTK_ALIGN_CENTER);
  gtk_widget_set_valign(button_.get(), GTK_ALIGN_CENTER);
  gtk_widget_set_size_request(drawing_, size, size);
  gtk_drawing_area_set_draw_func(
      GTK_DRAWING_AREA(drawing_),
      [](GtkDrawingArea*, cairo_t* context, int width, int height, gpointer self) noexcept {
        cairo_translate(context, width / 2.0, height / 2.0);
        contained([&] { static_cast<const ShutterButton*>(self)->draw(context); });
      },
      this, nullptr);
  gtk_button_set_child(GTK_BUTTON(button_.get()), drawing_);

  connections_.add(button_.get(), "clicked", [this] { handlers_.tapped(); });
  listenToPointer();
  listenToKeys();
}

ShutterButton::~ShutterButton() {
  gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(drawing_), nullptr, nullptr, nullptr);
}

void ShutterButton::listenToPointer() {
  ignoreClicks(button_.get());
  // A drag follows the pointer until its release, wherever that is: a finger that holds trembles.
  auto* const drag = gtk_gesture_drag_new();
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(drag), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(button_.get(), GTK_EVENT_CONTROLLER(drag));
  connections_.add(drag, "drag-begin", [this, drag] {
    gtk_gesture_set_state(drag, GTK_EVENT_SEQUENCE_CLAIMED);
    press();
  });
  connections_.add(drag, "drag-end", [this] { release(); });
  // The system took the pointer away: no tap, but a hold ends.
  connections_.add(drag, "cancel", [this] { endHold(); });
}

// Before the button itself, to which a key that goes down is a click.
void ShutterButton::listenToKeys() {
  auto* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(button_.get(), keys);
  connections_.add(keys, "key-pressed", [this](guint key) { return keyPressed(key); });
  connections_.add(keys, "key-released", [this] { keyReleased(); });
  auto* const focus = gtk_event_controller_focus_new();
  gtk_widget_add_controller(button_.get(), focus);
  // The key will go up where no event of it comes here.
  connections_.add(focus, "leave", [this] {
    if (std::exchange(byKey_, false)) endHold();
  });
}

bool ShutterButton::keyPressed(guint key) {
  if (key != GDK_KEY_space && key != GDK_KEY_Return && key != GDK_KEY_KP_Enter) return false;
  if (press_ == Press::none) {
    byKey_ = true;
    press();
  }
  return true;
}

void ShutterButton::keyReleased() {
  if (std::exchange(byKey_, false)) release();
}

void ShutterButton::press() {
  press_ = Press::down;
  gtk_widget_queue_draw(drawing_);
  main_.asyncAfter(holdDelay, alive_.guard([this, number = ++presses_] {
    if (press_ != Press::down || number != presses_) return;
    press_ = Press::held;
    handlers_.held();
  }));
}

void ShutterButton::release() {
  if (press_ == Press::down) {
    press_ = Press::none;
    gtk_widget_queue_draw(drawing_);
    handlers_.tapped();
  } else {
    endHold();
  }
}

void ShutterButton::endHold() {
  const auto before = std::exchange(press_, Press::none);
  gtk_widget_queue_draw(drawing_);
  if (before == Press::held) handlers_.released();
}

void ShutterButton::showRecording(double fraction) {
  recording_ = true;
  fraction_ = std::clamp(fraction, 0.0, 1.0);
  gtk_widget_queue_draw(drawing_);
}

void ShutterButton::showIdle() {
  recording_ = false;
  gtk_widget_queue_draw(drawing_);
}

// Around the origin.
void ShutterButton::draw(cairo_t* context) const {
  cairo_set_line_width(context, ringWidth);
  if (!recording_) {
    cairo_set_source_rgb(context, 1, 1, 1);
    circle(context, idleRing);
    cairo_stroke(context);
    circle(context, press_ == Press::none ? disc : pressedDisc);
    cairo_fill(context);
    return;
  }
  circle(context, recordingRing);
  cairo_set_source_rgba(context, 1, 1, 1, 0.2);
  cairo_fill_preserve(context);
  cairo_set_source_rgba(context, 1, 1, 1, 0.6);
  cairo_stroke(context);
  cairo_set_source_rgb(context, 1, 0.23, 0.19);
  cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
  cairo_arc(context, 0, 0, recordingRing, top, top + fullTurn * fraction_);
  cairo_stroke(context);
  // A square whose outline rounds its corners.
  constexpr double side = stopSide - 2 * stopCorner;
  cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_width(context, 2 * stopCorner);
  cairo_rectangle(context, -side / 2, -side / 2, side, side);
  cairo_stroke_preserve(context);
  cairo_fill(context);
}

}  // namespace orivex::gtk

#include "EdgePanSource.h"

#include <cmath>

namespace orivex::gtk {
namespace {

// How far from the edge a drag may begin, and how far it goes before it is taken from the page; both in points.
constexpr double edgeWidth = 20;
constexpr double slack = 8;

}  // namespace

EdgePanSource::EdgePanSource(GtkWidget* widget, std::shared_ptr<ScreenEdgePanGesture> gesture)
    : widget_(widget), drag_(gtk_gesture_drag_new()), gesture_(std::move(gesture)) {
  // Before the page sees the press: what begins at the edge is ours to judge.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(drag_), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(widget_, GTK_EVENT_CONTROLLER(drag_));
  connections_.add(drag_, "drag-begin", [this](double x) {
    panning_ = false;
    if (x > edgeWidth) gtk_gesture_set_state(drag_, GTK_EVENT_SEQUENCE_DENIED);
  });
  connections_.add(drag_, "drag-update", [this](double x, double y) { update(x, y); });
  connections_.add(drag_, "drag-end", [this](double x) { end(ScreenEdgePanGesture::State::ended, x); });
  connections_.add(drag_, "cancel", [this] { end(ScreenEdgePanGesture::State::cancelled, translation_); });
}

EdgePanSource::~EdgePanSource() {
  connections_.disconnect();
  gtk_widget_remove_controller(widget_, GTK_EVENT_CONTROLLER(drag_));
}

void EdgePanSource::update(double x, double y) {
  if (!panning_) {
    if (std::hypot(x, y) < slack) return;
    if (x < std::abs(y)) {
      gtk_gesture_set_state(drag_, GTK_EVENT_SEQUENCE_DENIED);
      return;
    }
    gtk_gesture_set_state(drag_, GTK_EVENT_SEQUENCE_CLAIMED);
    panning_ = true;
    report(ScreenEdgePanGesture::State::began, x);
  }
  report(ScreenEdgePanGesture::State::changed, x);
}

void EdgePanSource::end(ScreenEdgePanGesture::State state, double translation) {
  if (std::exchange(panning_, false)) report(state, translation);
}

void EdgePanSource::report(ScreenEdgePanGesture::State state, double translation) {
  translation_ = translation;
  const auto kept = gesture_;
  kept->report(state, translation);
}

}  // namespace orivex::gtk

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
  began_ = SignalConnection::connect<&EdgePanSource::begin>(drag_, "drag-begin", this);
  updated_ = SignalConnection::connect<&EdgePanSource::update>(drag_, "drag-update", this);
  ended_ = SignalConnection::connect<&EdgePanSource::end>(drag_, "drag-end", this);
  cancelled_ = SignalConnection::connect<&EdgePanSource::cancel>(drag_, "cancel", this);
}

EdgePanSource::~EdgePanSource() {
  began_.disconnect();
  updated_.disconnect();
  ended_.disconnect();
  cancelled_.disconnect();
  gtk_widget_remove_controller(widget_, GTK_EVENT_CONTROLLER(drag_));
}

void EdgePanSource::begin(GtkGestureDrag* drag, double x, double /*y*/) {
  panning_ = false;
  if (x > edgeWidth) gtk_gesture_set_state(GTK_GESTURE(drag), GTK_EVENT_SEQUENCE_DENIED);
}

void EdgePanSource::update(GtkGestureDrag* drag, double x, double y) {
  if (!panning_) {
    if (std::hypot(x, y) < slack) return;
    if (x < std::abs(y)) {
      gtk_gesture_set_state(GTK_GESTURE(drag), GTK_EVENT_SEQUENCE_DENIED);
      return;
    }
    gtk_gesture_set_state(GTK_GESTURE(drag), GTK_EVENT_SEQUENCE_CLAIMED);
    panning_ = true;
    report(ScreenEdgePanGesture::State::began, x);
  }
  report(ScreenEdgePanGesture::State::changed, x);
}

void EdgePanSource::end(GtkGestureDrag* /*drag*/, double x, double /*y*/) {
  if (std::exchange(panning_, false)) report(ScreenEdgePanGesture::State::ended, x);
}

void EdgePanSource::cancel(GtkGesture* /*drag*/, GdkEventSequence* /*sequence*/) {
  if (std::exchange(panning_, false)) report(ScreenEdgePanGesture::State::cancelled, translation_);
}

void EdgePanSource::report(ScreenEdgePanGesture::State state, double translation) {
  translation_ = translation;
  const auto kept = gesture_;
  kept->report(state, translation);
}

}  // namespace orivex::gtk

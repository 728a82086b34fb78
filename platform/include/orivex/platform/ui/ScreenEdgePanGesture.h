#pragma once

#include <functional>
#include <string_view>

namespace orivex {

/// A drag that starts at the left edge of the view to which it is added. The backend recognises it and reports here.
class ScreenEdgePanGesture {
 public:
  enum class State { possible, began, changed, ended, cancelled };
  using Handler = std::function<void(const ScreenEdgePanGesture&)>;

  explicit ScreenEdgePanGesture(Handler handler) : handler_(std::move(handler)) {}

  State state() const { return state_; }

  /// Points to the right of where the drag began; negative to its left.
  double translation() const { return translation_; }

  /// What the backend calls at each step of the drag.
  void report(State state, double translation) {
    state_ = state;
    translation_ = translation;
    handler_(*this);
  }

 private:
  Handler handler_;
  State state_ = State::possible;
  double translation_ = 0;
};

/// Evaluated in a page when a gesture outside has taken the pointers that are down in it: the page gets a pointercancel
/// for each, and does not wait for what will never come. An engine listens for the event.
inline constexpr std::string_view pointersTakenScript = "dispatchEvent(new Event('orivexpointerstaken'));";

}  // namespace orivex

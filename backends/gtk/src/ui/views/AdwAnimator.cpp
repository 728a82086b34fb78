#include "AdwAnimator.h"

#include <memory>

#include <adwaita.h>

#include "../../Contained.h"
#include "../../glib/GRef.h"
#include "../GtkApplicationPort.h"

namespace orivex::gtk {
namespace {

// What an animation under way needs; ends itself when it is done.
struct Run {
  std::function<void(double)> step;
  Once<void()> completion;
  GRef<AdwAnimation> animation;
};

void stepped(double value, gpointer data) noexcept {
  // The last step comes with the end, so that it is told once and exactly.
  if (value < 1) contained([&] { static_cast<Run*>(data)->step(value); });
}

void done(AdwAnimation* /*animation*/, gpointer data) noexcept {
  const std::unique_ptr<Run> run(static_cast<Run*>(data));
  g_signal_handlers_disconnect_by_data(run->animation.get(), data);
  contained([&] { run->step(1); });
  contained([&] { std::move(run->completion)(); });
}

void play(GtkWidget* widget, double seconds, std::unique_ptr<Run> run) {
  auto* const target = adw_callback_animation_target_new(stepped, run.get(), nullptr);
  auto* const animation = adw_timed_animation_new(widget, 0, 1, static_cast<guint>(seconds * 1000), target);
  adw_timed_animation_set_easing(ADW_TIMED_ANIMATION(animation), ADW_EASE_IN_OUT_CUBIC);
  run->animation = GRef<AdwAnimation>::adopt(animation);
  g_signal_connect(animation, "done", G_CALLBACK(done), run.release());  // owned by "done" from here on
  adw_animation_play(animation);
}

}  // namespace

void AdwAnimator::animate(double seconds, std::function<void(double progress)> step, Once<void()> completion) {
  auto run = std::make_unique<Run>(Run{std::move(step), std::move(completion), nullptr});
  // Without a mapped widget the animation ends inside the call that starts it, which no caller expects.
  mainQueue_.async([this, seconds, run = std::move(run)]() mutable {
    auto* const front = application_.frontWindow();
    if (front) {
      play(GTK_WIDGET(front->overlay()), seconds, std::move(run));
    } else {
      run->step(1);
      std::move(run->completion)();
    }
  });
}

}  // namespace orivex::gtk

#include "GtkRecordPermission.h"

#include <utility>

#include "SoundSettings.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

void GtkRecordPermission::request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) {
  const auto known = consent_.answer();
  if (known) {
    queue_.async([answer = std::move(answer), granted = *known]() mutable { std::move(answer)(granted); });
  } else {
    waiting_.push_back(std::move(answer));
  }
  if (known != true && !dialog_) showDialog(applicationName, view, known == false);
}

void GtkRecordPermission::showDialog(const std::string& applicationName, View& view, bool isRefused) {
  const auto* const window = application_.find(view);
  if (!window) return give(false);
  dialog_ = std::make_unique<MicrophoneDialog>(
      *window, applicationName, isRefused, alive_.guard([this](MicrophoneDialog::Answer answer) { answered(answer); }));
  leaves_ = view.observeLeaving([this] {
    dialog_.reset();
    waiting_.clear();
  });
}

void GtkRecordPermission::answered(MicrophoneDialog::Answer answer) {
  const auto ended = std::move(dialog_);
  using Answer = MicrophoneDialog::Answer;
  if (answer == Answer::settings) SoundSettings::open();
  if (answer == Answer::allow || answer == Answer::refuse) consent_.remember(answer == Answer::allow);
  give(answer == Answer::allow);
}

void GtkRecordPermission::give(bool granted) {
  queue_.async([answers = std::exchange(waiting_, {}), granted]() mutable {
    for (auto& answer : answers) std::move(answer)(granted);
  });
}

}  // namespace orivex::gtk

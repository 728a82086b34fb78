#include "GtkRecordPermission.h"

#include <utility>

#include "MicrophonePortal.h"
#include "SoundSettings.h"

namespace orivex::gtk {

bool GtkRecordPermission::isSandboxed() {
  return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS);
}

void GtkRecordPermission::request(const std::string& applicationName, Once<void(bool granted)> answer) {
  if (isSandboxed_) return MicrophonePortal::ask(std::move(answer));
  const auto known = consent_.answer();
  if (known) {
    queue_.async([answer = std::move(answer), granted = *known]() mutable { std::move(answer)(granted); });
  } else {
    waiting_.push_back(std::move(answer));
  }
  if (known != true && !dialog_) showDialog(applicationName, known == false);
}

void GtkRecordPermission::showDialog(const std::string& applicationName, bool isRefused) {
  const auto* const front = application_.frontWindow();
  if (!front) return give(false);
  dialog_ =
      std::make_unique<MicrophoneDialog>(front->gtkWindow(), applicationName, isRefused,
                                         alive_.guard([this](MicrophoneDialog::Answer answer) { answered(answer); }));
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

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "../ui/AlertDialog.h"
#include "../ui/GtkApplicationPort.h"

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Audio.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// What visitors have answered to the question for the microphone, in a key file with one group per application:
///
///     [org.example.Shop]
///     microphone=true
///
/// The file is read at every question, so that a change is seen at once. One that is missing or broken holds no answer.
class ConsentFile {
 public:
  ConsentFile(std::string path, const std::string& applicationId);

  /// "orivex-sdk/permissions.ini" in the user's folder for state, which is $XDG_STATE_HOME or ~/.local/state.
  static std::string defaultPath();

  std::optional<bool> answer() const;

  /// An answer that cannot be written is one log line; the visitor is then asked again.
  void remember(bool allowed) const;

 private:
  const std::string path_;
  const std::string group_;
};

/// Asks the visitor with a dialog over the window of the view and remembers the answer, in a sandbox as elsewhere: no
/// portal asks for microphones. After a refusal, each later question is answered with no at once, and a dialog offers
/// the ways out of it.
class GtkRecordPermission final : public RecordPermission {
 public:
  GtkRecordPermission(MainQueue& queue, const GtkApplicationPort& application, ConsentFile consent)
      : queue_(queue), application_(application), consent_(std::move(consent)) {}

  /// What the visitor has answered; nothing before the first answer.
  std::optional<bool> answer() const { return consent_.answer(); }

  void request(const std::string& applicationName, View& view, Once<void(bool granted)> answer) override;

 private:
  void showDialog(const std::string& applicationName, View& view, bool wasRefused);
  void dialogAnswered(std::string_view id);
  void answerAll(bool granted);

  MainQueue& queue_;
  const GtkApplicationPort& application_;
  const ConsentFile consent_;
  std::vector<Once<void(bool)>> waiting_;
  std::unique_ptr<AlertDialog> dialog_;
  Subscription leaves_;
};

}  // namespace orivex::gtk

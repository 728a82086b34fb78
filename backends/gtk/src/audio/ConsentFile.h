#pragma once

#include <optional>
#include <string>

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

  /// An answer that cannot be kept is one log line; the visitor is then asked again.
  void remember(bool allowed) const;

 private:
  const std::string path_;
  const std::string group_;
};

}  // namespace orivex::gtk

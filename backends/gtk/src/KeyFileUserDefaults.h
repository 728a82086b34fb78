#pragma once

#include <string>

#include "glib/GMemory.h"

#include "orivex/platform/ports/UserDefaults.h"

namespace orivex::gtk {

/// The visitor's settings in a key file, group "Defaults":
///
///     [Defaults]
///     enable_eruda=true
///     AppleMeasurementUnits=Inches
///
/// The file is read at every question, so that a change is seen at once. A missing one is empty; one that is
/// unreadable or broken counts as empty and is told with one log line until it changes.
class KeyFileUserDefaults final : public UserDefaults {
 public:
  explicit KeyFileUserDefaults(std::string path) : path_(std::move(path)) {}

  /// "orivex-sdk/defaults.ini" in the user's configuration folder, which is $XDG_CONFIG_HOME or ~/.config.
  static std::string defaultPath();

  bool boolForKey(std::string_view key) const override;
  std::optional<std::string> stringForKey(std::string_view key) const override;

 private:
  GKeyFilePtr load() const;

  std::string path_;
  mutable std::string lastFailure_;
};

}  // namespace orivex::gtk

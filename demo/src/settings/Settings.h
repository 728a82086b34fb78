#pragma once

#include <string>

namespace orivex::demo {

/// What a visit is made of; the settings page edits it and a key file remembers it.
struct Settings {
  std::string server{};  ///< base address of the chat server; empty means the one that the demo starts
  std::string entryId = "demo";
  std::string key = "demo-key";
  std::string visitorId = "visitor-1";
  std::string visitorName{};
  bool push = false;           ///< whether the chat is pushed onto a navigation controller instead of presented
  double statusBarHeight = 0;  ///< points, as are the insets
  double topInset = 0;
  double bottomInset = 0;

  bool operator==(const Settings&) const = default;
};

/// The settings of the last run; the defaults where there are none.
Settings loadSettings();

/// Remembers the settings in the user's configuration folder. A failure costs one line on standard error.
void saveSettings(const Settings& settings);

}  // namespace orivex::demo

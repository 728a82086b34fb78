#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include <adwaita.h>

#include "chat/EventRecorder.h"

namespace orivex::demo {

/// Tells a scripted visitor where to click and what to read. Prints a line whenever a named control of the shop or of
/// the chat page appears, moves, changes its text or goes:
///
///     shows NAME X Y WIDTH HEIGHT TEXT     in points from the window's upper left corner
///     hides NAME
///
/// Controls of the page are those with a "data-testid", named "ID", or "ID.COMMAND" where they carry a command, with
/// "#2", "#3" after the name from the second of a name on. Another window than the shop's is the control "dialog", with
/// its title as the text, and the field in it that can be written in is "dialog-entry"; where they lie on the screen
/// their program does not know.
class PositionReporter {
 public:
  /// `chat` gives the chat that shows, or null.
  PositionReporter(AdwApplicationWindow* window, std::function<std::shared_ptr<OVKFApi>()> chat);
  PositionReporter(const PositionReporter&) = delete;
  PositionReporter& operator=(const PositionReporter&) = delete;
  ~PositionReporter();

  /// Takes what the page answers, and says whether the event was that.
  bool take(const ConversationEvent& event);

 private:
  using Controls = std::map<std::string, std::string>;

  void update();
  void addNamed(GtkWidget* widget, Controls& found) const;
  void addWindows(Controls& found) const;
  static void report(Controls& known, Controls found);

  AdwApplicationWindow* window_;
  std::function<std::shared_ptr<OVKFApi>()> chat_;
  Controls shop_;
  Controls page_;
  guint timer_;
};

}  // namespace orivex::demo

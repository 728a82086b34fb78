#pragma once

#include <memory>
#include <optional>

#include <adwaita.h>

#include "DemoWindow.h"
#include "PositionReporter.h"
#include "chat/ChatLauncher.h"
#include "chat/DemoServer.h"
#include "settings/Options.h"
#include "settings/Settings.h"

namespace orivex::demo {

/// The demo from its start to its end: puts window, chat and server together.
class Demo {
 public:
  explicit Demo(Options options);
  Demo(const Demo&) = delete;
  Demo& operator=(const Demo&) = delete;

  /// Runs until the window is closed; returns the process's exit code.
  int run();

 private:
  void activate(GtkApplication* application);
  void shutDown(GtkApplication* application);
  void startServer();
  void contact();
  void happened(const ConversationEvent& event);
  void settingsChanged(const Settings& settings);

  const Options options_;
  Settings settings_;
  ObjectPtr<AdwApplication> application_;
  std::unique_ptr<DemoServer> server_;
  std::unique_ptr<DemoWindow> window_;
  std::unique_ptr<ChatLauncher> launcher_;
  std::unique_ptr<PositionReporter> reporter_;
};

}  // namespace orivex::demo

#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "../../glib/GRef.h"
#include "../../glib/SignalConnection.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Reports which paths in a set of folders have come, changed or gone. Main thread.
class FolderWatch {
 public:
  /// `changed` gets the paths of a short while together.
  FolderWatch(MainQueue& queue, std::function<void(std::vector<std::string> paths)> changed);

  /// Adds folders, without those below them. The watching begins within the next turns of the main thread; each folder
  /// is reported as changed then, since nobody has seen what happened in it before.
  void watch(const std::vector<std::string>& folders);

  /// Ends the watching of a folder and of those below it.
  void forget(const std::string& folder);

 private:
  struct Monitor {
    GRef<GFileMonitor> monitor;
    SignalConnection changed;
  };

  void watchLater();
  Monitor monitorOf(const std::string& folder);
  void addChanged(std::string path);
  void report();

  MainQueue& queue_;
  std::function<void(std::vector<std::string> paths)> changed_;
  std::deque<std::string> waiting_;
  std::map<std::string, Monitor> monitors_;  // by folder
  std::set<std::string> changedPaths_;
  Alive alive_;
};

}  // namespace orivex::gtk

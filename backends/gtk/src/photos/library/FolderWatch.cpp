#include "FolderWatch.h"

#include <utility>

#include "../../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Each takes a fraction of a millisecond of the main thread.
constexpr int monitorsPerTurn = 8;

// Half of what the kernel grants all programs of a user together where memory is scarce.
constexpr std::size_t mostMonitors = 4096;

// A camera or a copying file manager changes many files in a row, and each file several times.
constexpr double gatheringSeconds = 0.2;

}  // namespace

FolderWatch::FolderWatch(MainQueue& queue, std::function<void(std::vector<std::string> paths)> changed)
    : queue_(queue), changed_(std::move(changed)) {}

void FolderWatch::watch(const std::vector<std::string>& folders) {
  const bool isIdle = waiting_.empty();
  waiting_.insert(waiting_.end(), folders.begin(), folders.end());
  if (isIdle) watchLater();
}

void FolderWatch::watchLater() {
  if (waiting_.empty()) return;
  queue_.async(alive_.guard([this] {
    for (int count = 0; count < monitorsPerTurn && !waiting_.empty(); ++count) {
      const std::string folder = std::move(waiting_.front());
      waiting_.pop_front();
      if (monitors_.contains(folder)) continue;
      if (monitors_.size() == mostMonitors) {
        log::warning("Too many photo folders to watch; from now on, changes are seen when the library is opened.");
        return waiting_.clear();
      }
      monitors_.emplace(folder, monitorOf(folder));
      addChanged(folder);
    }
    watchLater();
  }));
}

FolderWatch::Monitor FolderWatch::monitorOf(const std::string& folder) {
  const auto file = GRef<GFile>::adopt(g_file_new_for_path(folder.c_str()));
  auto monitor =
      GRef<GFileMonitor>::adopt(g_file_monitor_directory(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
  if (!monitor) return {};
  const auto changed = [this](GFile* touched, GFile* other, GFileMonitorEvent event) {
    // While a file is written, only the end of the writing counts.
    if (event == G_FILE_MONITOR_EVENT_CHANGED) return;
    for (GFile* const one : {touched, other}) {
      if (const GCharPtr path(one ? g_file_get_path(one) : nullptr); path) addChanged(path.get());
    }
  };
  auto connection = SignalConnection::connect(monitor.get(), "changed", changed);
  return {std::move(monitor), std::move(connection)};
}

void FolderWatch::forget(const std::string& folder) {
  monitors_.erase(folder);
  const std::string below = folder + "/";
  std::erase_if(monitors_, [&](const auto& monitor) { return monitor.first.starts_with(below); });
}

void FolderWatch::addChanged(std::string path) {
  if (changedPaths_.empty()) queue_.asyncAfter(gatheringSeconds, alive_.guard([this] { report(); }));
  changedPaths_.insert(std::move(path));
}

void FolderWatch::report() {
  const auto paths = std::exchange(changedPaths_, {});
  changed_({paths.begin(), paths.end()});
}

}  // namespace orivex::gtk

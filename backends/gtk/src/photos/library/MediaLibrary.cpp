#include "MediaLibrary.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include <glib.h>

#include "FolderScan.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

// A small library is read before the sheet's first frame and appears at once. Of a larger one the folders with the
// newest files, which are read first, fill the screen by then; the rest follows while the sheet slides in. In between
// the scan rests, so that the first pictures have a small device's processors for themselves.
constexpr double firstReportSeconds = 0.003;
constexpr int screenful = 24;
constexpr double restSeconds = 0.06;

// A folder that takes so long to read shows what it has so far, and so does a slow library from then on.
constexpr double slowSeconds = 0.12;

// Files between two checks of the clock.
constexpr int filesPerClockCheck = 64;

bool isIn(const std::string& path, const std::string& folder) {
  return path == folder || path.starts_with(folder + "/");
}

}  // namespace

struct MediaLibrary::Update {
  std::shared_ptr<const MediaCatalog> catalog;
  std::vector<std::string> newFolders;
  std::vector<std::string> goneFolders;
};

/// What the worker threads share: one of them at a time changes what is known and reports it.
class MediaLibrary::Worker final : public ScanVisitor, public std::enable_shared_from_this<Worker> {
 public:
  /// `report` is called on the worker threads, one call at a time.
  Worker(MainQueue& queue, std::vector<MediaRoot> roots, const MediaFilter& filter, std::function<void(Update)> report)
      : queue_(queue), roots_(std::move(roots)), filter_(filter), report_(std::move(report)), scan_(filter, *this) {
    for (const auto& root : roots_) scan_.add(root.path);
  }

  void stop() { stopped_ = true; }

  /// Reads the library, or what is left of it after a rest.
  void scan() {
    const std::lock_guard lock(mutex_);
    while (!stopped_ && scan_.visitNext()) {
      if (hasReported_ || found_ < screenful || queue_.now() < start_ + firstReportSeconds) continue;
      report();
      return queue_.asyncAfter(restSeconds,
                               [self = shared_from_this()] { self->queue_.global([self] { self->scan(); }); });
    }
    isComplete_ = true;
    // Even a root that is not there is watched: it may come.
    for (const auto& root : roots_) newFolders_.push_back(root.path);
    report();
  }

  /// Looks at what has changed.
  void update(const std::vector<std::string>& paths) {
    const std::lock_guard lock(mutex_);
    for (const auto& path : paths) update(path);
    if (hasChanged_) report();
  }

  bool foundFolder(const std::string& path, std::int64_t modified) override {
    const auto [known, isNew] = folders_.try_emplace(path, modified);
    if (!isNew && std::exchange(known->second, modified) == modified) return false;
    if (isNew) newFolders_.push_back(path);
    hasChanged_ = true;
    return true;
  }

  void foundItem(MediaItem item) override {
    add(std::move(item));
    if (isComplete_ || ++found_ % filesPerClockCheck != 0 || queue_.now() < slowAfter_) return;
    report();
    slowAfter_ = queue_.now() + slowSeconds;
  }

  bool isStopped() const override { return stopped_; }

 private:
  // An unchanged file keeps its item, by which the grid sees that nothing is to be drawn anew.
  void add(MediaItem item) {
    hasChanged_ = true;
    auto& known = items_[item.path];
    if (!known || *known != item) known = std::make_shared<MediaItem>(std::move(item));
  }

  void update(const std::string& path) {
    std::error_code failure;
    const auto status = std::filesystem::status(path, failure);
    const bool isHidden = nameOf(path).starts_with('.');
    if (!std::filesystem::exists(status)) {
      forget(path);
    } else if (std::filesystem::is_directory(status)) {
      if (!isHidden || folders_.contains(path)) FolderScan(filter_, *this).run({path});
    } else if (auto item = FolderScan::itemAt(path, filter_)) {
      add(*std::move(item));
    }
  }

  void forget(const std::string& path) {
    if (std::erase_if(items_, [&](const auto& item) { return isIn(item.first, path); }) > 0) hasChanged_ = true;
    if (std::erase_if(folders_, [&](const auto& folder) { return isIn(folder.first, path); }) == 0) return;
    hasChanged_ = true;
    // A root is watched on: it may come back.
    const auto isGone = [&](const MediaRoot& root) { return root.path == path; };
    if (std::none_of(roots_.begin(), roots_.end(), isGone)) goneFolders_.push_back(path);
  }

  void report() {
    hasReported_ = true;
    hasChanged_ = false;
    if (stopped_) return;
    MediaItems items;
    items.reserve(items_.size());
    for (const auto& [path, item] : items_) items.push_back(item);
    report_({std::make_shared<MediaCatalog>(std::move(items), roots_, isComplete_), std::exchange(newFolders_, {}),
             std::exchange(goneFolders_, {})});
  }

  MainQueue& queue_;
  const std::vector<MediaRoot> roots_;
  const MediaFilter filter_;
  const std::function<void(Update)> report_;
  FolderScan scan_;
  std::atomic<bool> stopped_ = false;
  std::mutex mutex_;
  std::unordered_map<std::string, MediaItemPtr> items_;  // by path
  std::map<std::string, std::int64_t> folders_;          // when each was last modified
  std::vector<std::string> newFolders_;                  // not reported yet
  std::vector<std::string> goneFolders_;                 // not reported yet
  bool hasReported_ = false;
  bool hasChanged_ = false;
  bool isComplete_ = false;
  int found_ = 0;
  const double start_ = queue_.now();  // seconds of the queue's clock, as the next
  double slowAfter_ = start_ + slowSeconds;
};

MediaLibrary::MediaLibrary(MainQueue& queue, std::vector<MediaRoot> roots, const MediaFilter& filter, Changed changed)
    : queue_(queue), changed_(std::move(changed)), watch_(queue, [this](const std::vector<std::string>& paths) {
        queue_.global([worker = worker_, paths] { worker->update(paths); });
      }) {
  auto apply = alive_.guard([this](const Update& update) {
    for (const auto& folder : update.goneFolders) watch_.forget(folder);
    watch_.watch(update.newFolders);
    changed_(update.catalog);
  });
  worker_ = std::make_shared<Worker>(queue, std::move(roots), filter, [&queue, apply](Update update) {
    queue.async([apply, update = std::move(update)]() mutable { apply(update); });
  });
  queue_.global([worker = worker_] { worker->scan(); });
}

MediaLibrary::~MediaLibrary() {
  worker_->stop();
  // To free thousands of files takes longer than the main thread has.
  queue_.global([worker = std::move(worker_)] {});
}

std::vector<MediaRoot> MediaLibrary::desktopRoots() {
  std::vector<MediaRoot> roots;
  const std::filesystem::path home = g_get_home_dir();
  const auto add = [&](GUserDirectory directory, const char* usualName, const char* name) {
    const char* const named = g_get_user_special_dir(directory);
    const auto path = (named ? std::filesystem::path(named) : home / usualName).lexically_normal();
    const auto folder = path.has_filename() ? path : path.parent_path();
    if (folder != home.lexically_normal()) roots.push_back({folder.string(), name});
  };
  add(G_USER_DIRECTORY_PICTURES, "Pictures", tr("图片"));
  add(G_USER_DIRECTORY_VIDEOS, "Videos", tr("视频"));
  return roots;
}

}  // namespace orivex::gtk

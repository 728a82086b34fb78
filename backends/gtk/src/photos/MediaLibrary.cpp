#include "MediaLibrary.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

#include <glib.h>

#include "FolderScan.h"
#include "MediaIndex.h"

namespace orivex::gtk {
namespace {

// A small library is read before the sheet's first frame and appears at once. Of a larger one the folders with the
// newest files, which are read first, fill the screen by then; the rest follows while the sheet slides in. In between
// the scan rests, so that the first pictures have a small device's processors for themselves.
constexpr double firstNewsSeconds = 0.003;
constexpr int screenful = 24;
constexpr std::chrono::milliseconds rest{60};

// A folder that takes so long to read shows what it has so far, and so does a slow library from then on.
constexpr double slowSeconds = 0.12;

// The clock is asked once in so many files.
constexpr int filesPerLook = 64;

}  // namespace

/// What the worker threads share: one of them at a time changes the index and tells about it.
class MediaLibrary::Worker final : public ScanVisitor {
 public:
  using News = std::function<void(std::shared_ptr<const MediaCatalog>, std::vector<std::string> folders,
                                  std::vector<std::string> gone)>;

  /// `news` is called on the worker threads, one call at a time.
  Worker(const MainQueue& queue, std::vector<MediaRoot> roots, const MediaFilter& filter, News news)
      : queue_(queue), roots_(std::move(roots)), filter_(filter), news_(std::move(news)) {}

  void stop() { stopped_ = true; }

  void scanRoots() {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> paths;
    for (const auto& root : roots_) paths.push_back(root.path);
    start_ = queue_.now();
    nextNews_ = start_ + slowSeconds;
    FolderScan(filter_, *this).run(paths);
    isComplete_ = true;
    // Even a root that is not there is watched: it may come.
    newFolders_.insert(newFolders_.end(), paths.begin(), paths.end());
    tell();
  }

  void lookAt(const std::vector<std::string>& paths) {
    const std::lock_guard lock(mutex_);
    for (const auto& path : paths) lookAt(path);
    if (hasChanged_) tell();
  }

  bool foundFolder(const std::string& path, std::int64_t modified) override {
    if (!hasTold_ && found_ >= screenful && queue_.now() >= start_ + firstNewsSeconds) {
      tell();
      std::this_thread::sleep_for(rest);
    }
    const auto [known, isNew] = folders_.try_emplace(path, modified);
    if (!isNew && known->second == modified) return false;
    known->second = modified;
    if (isNew) newFolders_.push_back(path);
    hasChanged_ = true;
    return true;
  }

  void foundItem(MediaItem item) override {
    index_.add(std::move(item));
    hasChanged_ = true;
    if (isComplete_ || ++found_ % filesPerLook != 0 || queue_.now() < nextNews_) return;
    tell();
    nextNews_ = queue_.now() + slowSeconds;
  }

  bool isStopped() const override { return stopped_; }

 private:
  void lookAt(const std::string& path) {
    std::error_code failure;
    const auto status = std::filesystem::status(path, failure);
    const bool isHidden = path.compare(path.rfind('/') + 1, 1, ".") == 0;
    if (!std::filesystem::exists(status)) {
      forget(path);
    } else if (std::filesystem::is_directory(status)) {
      if (!isHidden || folders_.contains(path)) FolderScan(filter_, *this).run({path});
    } else if (auto item = FolderScan::itemAt(path, filter_)) {
      hasChanged_ = true;
      index_.add(*std::move(item));
    }
  }

  void forget(const std::string& path) {
    if (index_.remove(path)) hasChanged_ = true;
    const auto isInside = [&](const auto& folder) {
      return folder.first == path || folder.first.starts_with(path + "/");
    };
    if (std::erase_if(folders_, isInside) == 0) return;
    hasChanged_ = true;
    // A root is watched on: it may come back.
    const auto isGone = [&](const MediaRoot& root) { return root.path == path; };
    if (std::none_of(roots_.begin(), roots_.end(), isGone)) gone_.push_back(path);
  }

  void tell() {
    hasTold_ = true;
    hasChanged_ = false;
    if (!stopped_) news_(index_.catalog(roots_, isComplete_), std::exchange(newFolders_, {}), std::exchange(gone_, {}));
  }

  const MainQueue& queue_;
  const std::vector<MediaRoot> roots_;
  const MediaFilter filter_;
  const News news_;
  std::atomic<bool> stopped_ = false;
  std::mutex mutex_;
  MediaIndex index_;
  std::map<std::string, std::int64_t> folders_;  // when each was last modified
  std::vector<std::string> newFolders_;          // not told yet
  std::vector<std::string> gone_;                // not told yet
  bool hasTold_ = false;
  bool hasChanged_ = false;
  bool isComplete_ = false;
  int found_ = 0;
  double start_ = 0;     // seconds of the queue's clock, as the next
  double nextNews_ = 0;  // not before then
};

MediaLibrary::MediaLibrary(MainQueue& queue, std::vector<MediaRoot> roots, const MediaFilter& filter, Changed changed)
    : queue_(queue), changed_(std::move(changed)), watch_(queue, [this](const std::vector<std::string>& paths) {
        queue_.global([worker = worker_, paths] { worker->lookAt(paths); });
      }) {
  auto learn = alive_.guard(
      [this](const auto& catalog, const auto& folders, const auto& gone) { this->learn(catalog, folders, gone); });
  worker_ = std::make_shared<Worker>(
      queue, std::move(roots), filter, [&queue, learn](auto catalog, auto folders, auto gone) mutable {
        queue.async([learn, catalog = std::move(catalog), folders = std::move(folders),
                     gone = std::move(gone)]() mutable { learn(catalog, folders, gone); });
      });
  queue_.global([worker = worker_] { worker->scanRoots(); });
}

MediaLibrary::~MediaLibrary() {
  worker_->stop();
  // To free thousands of files takes longer than the main thread has.
  queue_.global([worker = std::move(worker_)] {});
}

void MediaLibrary::learn(std::shared_ptr<const MediaCatalog> catalog, const std::vector<std::string>& folders,
                         const std::vector<std::string>& gone) {
  for (const auto& path : gone) watch_.forget(path);
  watch_.watch(folders);
  changed_(std::move(catalog));
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
  add(G_USER_DIRECTORY_PICTURES, "Pictures", "图片");
  add(G_USER_DIRECTORY_VIDEOS, "Videos", "视频");
  return roots;
}

}  // namespace orivex::gtk

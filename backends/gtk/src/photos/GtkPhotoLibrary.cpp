#include "GtkPhotoLibrary.h"

#include <chrono>
#include <utility>

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

// Long enough to play one video and let go of the one before.
constexpr std::chrono::seconds longestWorkerIdleness{2};

}  // namespace

GtkPhotoLibrary::GtkPhotoLibrary(MainQueue& queue, GtkApplicationPort& application, MediaReader reader,
                                 std::function<PhotoSources()> sources)
    : queue_(queue),
      application_(application),
      reader_(std::move(reader)),
      sources_(std::move(sources)),
      players_(1, longestWorkerIdleness) {}

PhotoSources GtkPhotoLibrary::desktopSources() {
  return {MediaLibrary::desktopRoots(), ThumbnailCache::ofDesktop()};
}

void GtkPhotoLibrary::show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) {
  if (sheet_ && !isClosing_) return;
  auto* const host = application_.find(view);
  if (!host) return log::warning("The photo library needs a screen in a window to open over.");
  forget();
  selected_ = std::move(selected);
  content_ = std::make_unique<PhotoSheet>(
      PipelineThreads{queue_, players_}, reader_, sources_(), options,
      PhotoSheet::Handlers{[this](PhotoSelection selection) { confirmed(std::move(selection)); }, [this] { close(); }});
  sheet_ = std::make_unique<Sheet>(host->overlay(), queue_, content_->widget(), tr("照片"), [this] { forget(); });
  resigns_ = application_.observe(ApplicationEvent::willResignActive, [this] {
    if (content_) content_->pause();
  });
  leaves_ = view.observeLeaving([this] { forget(); });
}

void GtkPhotoLibrary::confirmed(PhotoSelection selection) {
  queue_.async([selected = std::move(selected_), selection = std::move(selection)]() mutable {
    std::move(selected)(std::move(selection));
  });
  close();
}

void GtkPhotoLibrary::close() {
  isClosing_ = true;
  selected_ = nullptr;
  sheet_->close();
}

void GtkPhotoLibrary::forget() {
  resigns_ = {};
  sheet_.reset();
  content_.reset();
  selected_ = nullptr;
  isClosing_ = false;
}

}  // namespace orivex::gtk

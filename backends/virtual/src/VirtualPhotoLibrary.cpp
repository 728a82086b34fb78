#include "orivex/testing/VirtualPhotoLibrary.h"

#include <utility>

#include "ThreadCheck.h"

#include "orivex/platform/ui/View.h"

namespace orivex::testing {

void VirtualPhotoLibrary::show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) {
  requireMainThread(queue_, "PhotoLibrary::show");
  if (shown_) return;
  shown_ = options;
  selected_ = std::move(selected);
  leaves_ = view.observeLeaving([this] { close(); });
}

void VirtualPhotoLibrary::select(PhotoSelection selection) {
  shown_.reset();
  queue_.async([selected = std::move(selected_), selection = std::move(selection)]() mutable {
    std::move(selected)(std::move(selection));
  });
}

void VirtualPhotoLibrary::close() {
  shown_.reset();
  selected_ = nullptr;
}

}  // namespace orivex::testing

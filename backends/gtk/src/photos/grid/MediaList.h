#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>

#include <gio/gio.h>

#include "../../glib/GRef.h"
#include "../library/MediaCatalog.h"

namespace orivex::gtk {

/// The items of an album as a list model, whose objects are told apart by their positions only. Of a long album only
/// the beginning is in the model at first: a list widget makes dozens of rows at once for whatever is there, and the
/// main thread has only a moment. Main thread.
class MediaList {
 public:
  MediaList();
  MediaList(const MediaList&) = delete;
  MediaList& operator=(const MediaList&) = delete;
  /// The model is empty from here on.
  ~MediaList();

  GListModel* model() const { return model_.get(); }

  /// Replaces what is shown. Only the range that differs is announced as changed.
  void show(std::shared_ptr<const MediaItems> items);
  const std::shared_ptr<const MediaItems>& items() const { return items_; }

  /// Lets the model hold up to `count` items from now on.
  void setLimit(std::size_t count);

  std::size_t count() const { return std::min(limit_, items_->size()); }

 private:
  GRef<GListModel> model_;
  std::shared_ptr<const MediaItems> items_ = std::make_shared<MediaItems>();
  std::size_t limit_ = 0;
};

}  // namespace orivex::gtk

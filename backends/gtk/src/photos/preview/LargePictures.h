#pragma once

#include <functional>
#include <map>
#include <vector>

#include <gdk/gdk.h>

#include "../../glib/GRef.h"
#include "../library/MediaReader.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// The few pictures that a preview shows large, decoded one after the other on worker threads. Main thread.
class LargePictures {
 public:
  struct Picture {
    GRef<GdkTexture> texture;  // null when it is broken
    int detail = 0;
  };

  /// A picture of an item with `detail` pixels, across and down, for each pixel of the display.
  struct Request {
    MediaItemPtr item;
    int detail = 1;
  };

  /// `loaded` is called with each new picture.
  LargePictures(MainQueue& queue, const MediaReader& reader, std::function<void()> loaded)
      : queue_(queue), reader_(reader), loaded_(std::move(loaded)) {}

  /// Loads what is requested, in that order, and forgets everything else. `area`: pixels of the display.
  void request(std::vector<Request> requests, Size area);

  /// Null while it is not there.
  const Picture* find(const MediaItemPtr& item) const;

 private:
  void loadNext();
  void load(const Request& request);

  MainQueue& queue_;
  const MediaReader& reader_;
  const std::function<void()> loaded_;
  std::vector<Request> requests_;
  Size area_;
  std::map<MediaItemPtr, Picture> pictures_;
  bool isLoading_ = false;
  Alive alive_;
};

}  // namespace orivex::gtk

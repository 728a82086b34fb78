#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class View;

/// What an asset is; the numbers are those by which photo libraries tell them apart.
enum class MediaType : int { image = 1, video = 2 };

struct PickedMedia {
  MediaType mediaType = MediaType::image;
  Url file;  ///< a local file
  bool operator==(const PickedMedia&) const = default;
};

struct PhotoLibraryOptions {
  bool allowSelectImage = true;
  bool allowSelectVideo = true;
  bool allowMixSelect = false;  ///< photos and videos in one selection
  bool allowTakePhotoInLibrary = false;
  int maxSelectCount = 9;
  std::optional<std::int64_t> maxVideoSize = std::nullopt;  ///< bytes; a larger video cannot be selected...
  std::string videoTooLarge = {};                           ///< ...and the visitor reads this
};

struct PhotoSelection {
  std::vector<PickedMedia> items;  ///< in the order of selection, never empty
  bool isOriginal = false;         ///< full quality was asked for
};

/// The device's photos and videos.
class PhotoLibrary : public Interface {
 public:
  /// Opens the sheet over the window of `view`. Main thread; `selected` is called once, on the main thread and not
  /// inside this call, when the visitor confirms a selection, and never when the sheet closes without one, as it does
  /// with the screen of `view`. A second call while a sheet is open changes nothing, and its `selected` is never
  /// called.
  virtual void show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) = 0;
};

}  // namespace orivex

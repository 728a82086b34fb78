#pragma once

#include <memory>
#include <vector>

#include "orivex/media/ChatManager.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex {

class ViewController;

/// Describes photos and videos for the page: a photo holds itself as a JPEG of `jpegQuality` (0 to 1), a video is
/// uploaded and holds its first frame. What is too large, unreadable or not stored is told to the visitor and left out.
///
/// Main thread; the work is done on worker threads, at most two items at once. `completion` is called on the main
/// thread and not inside this call, with the descriptions in the order of `items`, and again with each video that the
/// visitor has sent anew; it is kept for as long as that may happen. Items that have not begun, or are not uploaded
/// yet, when `screen` no longer shows are left out too.
void describeMedia(std::vector<PickedMedia> items, double jpegQuality, std::weak_ptr<ViewController> screen,
                   ChatManager::PickedFiles completion);

}  // namespace orivex

#pragma once

#include <memory>
#include <string>

#include "video/FrameFeed.h"
#include "video/GstPointers.h"

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

/// The size at which a frame is shown in an area: it fills the area when that costs little of its edges, and else
/// shows as a whole.
Size placedSize(Size frame, Size area);

/// The end of a pipeline that shows its pictures, in launch syntax. `keepsTime`: whether each picture waits for its
/// time.
std::string previewBranch(bool keepsTime);

/// Connects the branch, inside `bin`, to `feed`. Pictures are scaled here, on the pipeline's thread, to what they take
/// of an area of this size (pixels), so that showing them is a copy.
void connectPreview(GstElement& bin, Size area, bool mirrored, const std::shared_ptr<FrameFeed>& feed);

}  // namespace orivex::gtk

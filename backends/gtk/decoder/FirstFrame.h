#pragma once

#include <gst/gst.h>

#include "video/GstPointers.h"

namespace orivex::gtk {

/// The first frame of the video at `uri` in RGB, upright. Null when it cannot be decoded within `patience`.
SharedSample firstFrame(const char* uri, GstClockTime patience);

}  // namespace orivex::gtk

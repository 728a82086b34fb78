#pragma once

#include <string>

#include <gst/gst.h>

namespace orivex::gtk {

/// The first frame of the video at `uri` as a JPEG, upright; empty when it cannot be decoded within `patience`.
/// `quality` is from 0 to 1. GStreamer must be initialised. Any thread; blocks.
std::string firstFrame(const char* uri, double quality, GstClockTime patience);

}  // namespace orivex::gtk

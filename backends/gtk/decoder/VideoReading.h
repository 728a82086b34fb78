#pragma once

#include <string>
#include <variant>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "PictureReading.h"
#include "glib/GRef.h"

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/ports/MediaReading.h"

namespace orivex::gtk {

/// Loads GStreamer and leaves of it what reads video files.
void prepareVideos();

/// Measures the video of an open file by what it holds. A video without a decoder on this device is a failure; a sound
/// track without one does not matter.
std::variant<VideoFacts, Failure> measureVideo(int file, double quality);

struct ScaledFrame {
  GRef<GdkPixbuf> picture;
  double duration;  // seconds
};

/// The video's first frame as it is seen, at no more than `most` and never enlarged.
std::variant<ScaledFrame, Failure> readFrame(int file, PixelSize most);

}  // namespace orivex::gtk

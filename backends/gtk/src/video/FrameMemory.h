#pragma once

#include <gst/gst.h>

namespace orivex::gtk {

/// Makes the elements of `pipeline`, those that it adds later too, keep their frames in pages that go back to the
/// system at once when a frame is let go of. The C library would keep a few frames in one region for each of its
/// streaming threads, up to eight regions a processor, for as long as the process lives. Memory of a device or of
/// another element's choice stays what it is. Call it before the pipeline starts; any thread.
void keepFramesInPages(GstElement& pipeline);

}  // namespace orivex::gtk

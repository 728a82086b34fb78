#pragma once

#include <memory>

#include <gst/gst.h>

namespace orivex::gtk {

/// Deleter for GStreamer's reference-counted values: caps, samples, buffers, messages.
struct UnrefMiniObject {
  template <class MiniObject>
  void operator()(MiniObject* object) const {
    gst_mini_object_unref(reinterpret_cast<GstMiniObject*>(object));
  }
};

using GstCapsPtr = std::unique_ptr<GstCaps, UnrefMiniObject>;
using GstMessagePtr = std::unique_ptr<GstMessage, UnrefMiniObject>;

/// One frame with its format. Several threads may read it at a time.
using SharedSample = std::shared_ptr<GstSample>;

/// Takes over a reference that the caller owns.
inline SharedSample adoptSample(GstSample* sample) {
  return {sample, UnrefMiniObject()};
}

}  // namespace orivex::gtk

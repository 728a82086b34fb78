#include "ClipInput.h"

#include <gst/app/gstappsrc.h>

namespace orivex::gtk {

void ClipInput::push(GstSample& frame, GstClockTime time) {
  // Taken before the recording began.
  if (!GST_CLOCK_TIME_IS_VALID(time) || time < base_) return;
  const bool isFirst = !GST_CLOCK_TIME_IS_VALID(first_);
  if (isFirst) first_ = time;
  if (time - first_ >= longest_) return;

  auto* const source = GST_APP_SRC(source_.get());
  if (isFirst) gst_app_src_set_caps(source, gst_sample_get_caps(&frame));
  auto* const buffer = gst_buffer_copy(gst_sample_get_buffer(&frame));  // shares the pixels
  GST_BUFFER_PTS(buffer) = time - base_;
  GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
  gst_app_src_push_buffer(source, buffer);
  if (isFirst) began_();
}

}  // namespace orivex::gtk

#include "video/SampleHandler.h"

#include <memory>
#include <utility>

#include <gst/app/gstappsink.h>

#include "Contained.h"
#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

using Handler = std::function<void(SharedSample)>;

GstFlowReturn received(GstAppSink* sink, gpointer handler) noexcept {
  const auto pulled = adoptSample(gst_app_sink_pull_sample(sink));
  // The element writes into its sample again after a jump; ours, which shares the pixels, may be kept.
  contained([&] {
    if (pulled) (*static_cast<Handler*>(handler))(adoptSample(gst_sample_copy(pulled.get())));
  });
  return GST_FLOW_OK;
}

}  // namespace

bool handleSamples(GstElement& bin, const char* name, Handler handler) {
  const auto sink = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(&bin), name));
  if (!sink) return false;
  auto owned = std::make_unique<Handler>(std::move(handler));
  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = received;
  gst_app_sink_set_callbacks(GST_APP_SINK(sink.get()), &callbacks, owned.release(),
                             [](gpointer data) { delete static_cast<Handler*>(data); });
  return true;
}

}  // namespace orivex::gtk

#include "video/Elements.h"

#include <memory>
#include <utility>

#include <gst/app/gstappsink.h>

#include "Contained.h"
#include "glib/GMemory.h"

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

ElementOrError made(GstElement* element, GError* error) {
  auto owned = GRef<GstElement>::sink(element);
  if (error || !owned) return adoptError(error);
  return owned;
}

}  // namespace

PipelineError adoptError(GError* error, std::string origin) {
  const GErrorPtr owned(error);
  if (!owned) return pipelineError("unknown");
  return {owned->domain, owned->code, owned->message, std::move(origin)};
}

PipelineError pipelineError(std::string text) {
  return {GST_CORE_ERROR, GST_CORE_ERROR_FAILED, std::move(text), {}};
}

ElementOrError parsePipeline(const std::string& description) {
  GError* error = nullptr;
  auto* const pipeline = gst_parse_launch_full(description.c_str(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
  return made(pipeline, error);
}

ElementOrError parseBin(const std::string& description) {
  constexpr auto flags = static_cast<GstParseFlags>(GST_PARSE_FLAG_FATAL_ERRORS | GST_PARSE_FLAG_PLACE_IN_BIN);
  GError* error = nullptr;
  auto* const bin = gst_parse_bin_from_description_full(description.c_str(), TRUE, nullptr, flags, &error);
  return made(bin, error);
}

// A format is no element of its own.
ElementOrError makeSourceBin(const std::string& description) {
  return parseBin(description + " ! identity");
}

GRef<GstElement> elementIn(GstElement& bin, const char* name) {
  return GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(&bin), name));
}

void handleSamples(GstElement& appsink, Handler handler) {
  auto owned = std::make_unique<Handler>(std::move(handler));
  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = received;
  gst_app_sink_set_callbacks(GST_APP_SINK(&appsink), &callbacks, owned.release(),
                             [](gpointer data) { delete static_cast<Handler*>(data); });
}

}  // namespace orivex::gtk

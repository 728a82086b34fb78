#include "Pipeline.h"

#include <atomic>

#include <gst/app/gstappsink.h>
#include <malloc.h>

#include "../Contained.h"
#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

using SampleHandler = std::function<void(SharedSample)>;

GstFlowReturn sampleReceived(GstAppSink* sink, gpointer handler) noexcept {
  const auto pulled = adoptSample(gst_app_sink_pull_sample(sink));
  // The element writes into its sample again after a seek; ours, which shares the pixels, may be kept.
  contained([&] {
    if (pulled) (*static_cast<SampleHandler*>(handler))(adoptSample(gst_sample_copy(pulled.get())));
  });
  return GST_FLOW_OK;
}

ElementOrError parsed(GstElement* element, GError* error) {
  auto owned = GRef<GstElement>::sink(element);
  if (error || !owned) return adoptError(error);
  return owned;
}

// Carries what the pipeline's threads say to the main thread: an error, or the end of the stream.
struct BusHandler {
  MainQueue& main;
  std::function<void(const std::optional<PipelineError>&)> report;
  bool needsDevice;
};

std::optional<PipelineError> errorIn(GstMessage* message, bool needsDevice) {
  GError* error = nullptr;
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
    gst_message_parse_error(message, &error, nullptr);
  } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING && needsDevice) {
    gst_message_parse_warning(message, &error, nullptr);
    if (!g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_FOUND)) g_clear_error(&error);
  }
  if (!error) return std::nullopt;
  const GCharPtr origin(gst_object_get_path_string(GST_MESSAGE_SRC(message)));
  return adoptError(error, origin ? origin.get() : "");
}

GstBusSyncReply messageReceived(GstBus* /*bus*/, GstMessage* message, gpointer data) noexcept {
  const GstMessagePtr owned(message);
  contained([&] {
    const auto& handler = *static_cast<const BusHandler*>(data);
    auto error = errorIn(message, handler.needsDevice);
    if (!error && GST_MESSAGE_TYPE(message) != GST_MESSAGE_EOS) return;
    handler.main.async([report = handler.report, error = std::move(error)] { report(error); });
  });
  return GST_BUS_DROP;
}

// An element that still plays must not be freed.
struct StopElement {
  void operator()(GstElement* element) const {
    gst_element_set_state(element, GST_STATE_NULL);
    gst_object_unref(element);
  }
};

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
  return parsed(pipeline, error);
}

ElementOrError parseBin(const std::string& description) {
  constexpr auto flags = static_cast<GstParseFlags>(GST_PARSE_FLAG_FATAL_ERRORS | GST_PARSE_FLAG_PLACE_IN_BIN);
  GError* error = nullptr;
  auto* const bin = gst_parse_bin_from_description_full(description.c_str(), TRUE, nullptr, flags, &error);
  return parsed(bin, error);
}

// A format is no element of its own.
ElementOrError makeSourceBin(const std::string& description) {
  return parseBin(description + " ! identity");
}

GRef<GstElement> elementIn(GstElement& bin, const char* name) {
  return GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(&bin), name));
}

void handleSamples(GstElement& appsink, SampleHandler handler) {
  auto owned = std::make_unique<SampleHandler>(std::move(handler));
  GstAppSinkCallbacks callbacks{};
  callbacks.new_sample = sampleReceived;
  gst_app_sink_set_callbacks(GST_APP_SINK(&appsink), &callbacks, owned.release(),
                             [](gpointer data) { delete static_cast<SampleHandler*>(data); });
}

/// What the worker holds of a pipeline.
struct Pipeline::Core {
  explicit Core(Build builder) : build(std::move(builder)) {}

  // Worker.
  void start(const BusHandler& handler) {
    if (closed) return;
    prepareGStreamer();
    const auto fail = [&](const PipelineError& error) {
      handler.main.async([report = handler.report, error] { report(error); });
    };
    const auto built = build();
    if (const auto* const error = std::get_if<PipelineError>(&built)) return fail(*error);
    element.reset(GST_ELEMENT(gst_object_ref(std::get<GRef<GstElement>>(built).get())));
    const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(element.get()));
    gst_bus_set_sync_handler(bus.get(), messageReceived, std::make_unique<BusHandler>(handler).release(),
                             [](gpointer data) { delete static_cast<BusHandler*>(data); });
    // Most elements post on the bus why they refuse, before this is reported for the few that do not.
    if (gst_element_set_state(element.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
      fail(pipelineError("the pipeline does not start"));
    }
  }

  const Build build;
  std::atomic<bool> closed = false;
  std::unique_ptr<GstElement, StopElement> element;
};

Pipeline::Pipeline(PipelineThreads threads, Build build, Handlers handlers)
    : threads_(threads), handlers_(std::move(handlers)), core_(std::make_shared<Core>(std::move(build))) {
  const BusHandler handler{threads_.main,
                           alive_.guard([this](const std::optional<PipelineError>& error) { reported(error); }),
                           handlers_.needsDevice};
  threads_.worker.run([core = core_, handler] { core->start(handler); });
}

Pipeline::~Pipeline() {
  core_->closed = true;
  // The worker's reference is the last one, unless the worker has ended.
  threads_.worker.run([core = std::move(core_)]() mutable { core.reset(); });
}

void Pipeline::run(std::function<void(GstElement&)> work) {
  threads_.worker.run([core = core_, work = std::move(work)] {
    if (core->element && !core->closed) work(*core->element);
  });
}

void Pipeline::reported(const std::optional<PipelineError>& error) {
  if (error) {
    if (const auto failed = std::exchange(handlers_, {}).failed) failed(*error);
  } else if (const auto ended = handlers_.ended) {
    ended();
  }
}

void prepareGStreamer() {
  // The C library would keep a few frames for each streaming thread, up to eight regions a processor, for as long as
  // the process lives: from this size on, freed memory goes back to the system.
  constexpr int smallestFrame = 256 * 1024;
  [[maybe_unused]] static const int set = mallopt(M_MMAP_THRESHOLD, smallestFrame);
  gst_init(nullptr, nullptr);
}

}  // namespace orivex::gtk

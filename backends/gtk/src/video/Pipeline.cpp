#include "video/Pipeline.h"

#include <optional>
#include <utility>

#include <gst/gst.h>
#include <malloc.h>

#include "Contained.h"
#include "glib/GMemory.h"
#include "video/GstPointers.h"

namespace orivex::gtk {
namespace {

// An element that still plays must not be let go of.
struct StopElement {
  void operator()(GstElement* element) const {
    gst_element_set_state(element, GST_STATE_NULL);
    gst_object_unref(element);
  }
};

}  // namespace

/// What the worker holds of a pipeline.
struct Pipeline::Core {
  std::atomic<bool> closed = false;
  std::shared_ptr<void> belongings;
  std::unique_ptr<GstElement, StopElement> element;
};

/// Carries what the pipeline's threads say to the main thread.
class Pipeline::BusListener {
 public:
  using Report = std::function<void(const std::optional<PipelineError>&)>;

  BusListener(MainQueue& main, Report report, bool needsDevice)
      : main_(main), report_(std::move(report)), needsDevice_(needsDevice) {}

  static void listen(GstElement& element, MainQueue& main, Report report, bool needsDevice) {
    auto listener = std::make_unique<BusListener>(main, std::move(report), needsDevice);
    const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(&element));
    gst_bus_set_sync_handler(bus.get(), received, listener.release(),
                             [](gpointer data) { delete static_cast<BusListener*>(data); });
  }

 private:
  static GstBusSyncReply received(GstBus* /*bus*/, GstMessage* message, gpointer data) noexcept {
    const GstMessagePtr owned(message);
    contained([&] { static_cast<const BusListener*>(data)->consider(message); });
    return GST_BUS_DROP;
  }

  void consider(GstMessage* message) const {
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
      main_.async([report = report_] { report(std::nullopt); });
      return;
    }
    GError* error = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
      gst_message_parse_error(message, &error, nullptr);
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_WARNING && needsDevice_) {
      gst_message_parse_warning(message, &error, nullptr);
      if (!g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_FOUND)) g_clear_error(&error);
    }
    if (!error) return;
    const GCharPtr origin(gst_object_get_path_string(GST_MESSAGE_SRC(message)));
    main_.async([report = report_, told = adoptError(error, origin ? origin.get() : "")] { report(told); });
  }

  MainQueue& main_;
  const Report report_;
  const bool needsDevice_;
};

Pipeline::Pipeline(PipelineThreads threads, Build build, Handlers handlers, std::shared_ptr<void> belongings)
    : threads_(threads), handlers_(std::move(handlers)), core_(std::make_shared<Core>()) {
  core_->belongings = std::move(belongings);
  const BusListener::Report report = alive_.guard([this](const std::optional<PipelineError>& error) {
    if (error) {
      fail(*error);
    } else if (const auto ended = handlers_.ended; ended && !failed_) {
      ended();
    }
  });
  threads_.worker.run(
      [core = core_, &main = threads_.main, build = std::move(build), report, needsDevice = handlers_.needsDevice] {
        if (core->closed) return;
        prepareGStreamer();
        const auto made = build();
        if (const auto* const error = std::get_if<PipelineError>(&made)) {
          main.async([report, told = *error] { report(told); });
          return;
        }
        core->element.reset(GST_ELEMENT(gst_object_ref(std::get<GRef<GstElement>>(made).get())));
        BusListener::listen(*core->element, main, report, needsDevice);
        // Elements tell on the bus why they refuse; the few that do not are spoken for here, later than those that do.
        if (gst_element_set_state(core->element.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
          main.async([report] { report(pipelineError("the pipeline does not start")); });
        }
      });
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

void Pipeline::fail(const PipelineError& error) {
  if (std::exchange(failed_, true)) return;
  const auto failed = handlers_.failed;
  if (failed) failed(error);
}

void prepareGStreamer() {
  // The C library would keep a few frames for each streaming thread, up to eight regions a processor, for as long as
  // the process lives: from this size on, memory goes back to the system when it is let go of.
  constexpr int smallestFrame = 256 * 1024;
  [[maybe_unused]] static const int set = mallopt(M_MMAP_THRESHOLD, smallestFrame);
  gst_init(nullptr, nullptr);
}

}  // namespace orivex::gtk

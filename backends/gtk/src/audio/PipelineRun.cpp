#include "PipelineRun.h"

#include <utility>

#include "../Contained.h"

namespace orivex::gtk {
namespace {

Failure takeFailure(GError* raised) {
  const GErrorPtr error(raised);
  return Failure{error ? error->message : "unknown error"};
}

// Elements that choose a device go on with a silent one when they find none, and only warn.
std::optional<Failure> failureIn(GstMessage* message) {
  GError* error = nullptr;
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
    gst_message_parse_error(message, &error, nullptr);
    return takeFailure(error);
  }
  if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_WARNING) return std::nullopt;
  gst_message_parse_warning(message, &error, nullptr);
  const bool isMissing = g_error_matches(error, GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_NOT_FOUND);
  const auto failure = takeFailure(error);
  return isMissing ? std::optional(failure) : std::nullopt;
}

}  // namespace

std::shared_ptr<PipelineRun> PipelineRun::start(WorkerPool& workers, std::function<Made()> make,
                                                Once<void(std::optional<Failure>)> ended) {
  std::shared_ptr<PipelineRun> started(new PipelineRun);
  workers.run(
      [started, make = std::move(make), ended = std::move(ended)]() mutable { started->run(make, std::move(ended)); });
  return started;
}

void PipelineRun::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  changed_.notify_all();
}

void PipelineRun::run(const std::function<Made()>& make, Once<void(std::optional<Failure>)> ended) {
  {
    const std::lock_guard lock(mutex_);
    if (stopped_) return;
  }
  GError* error = nullptr;
  if (!gst_init_check(nullptr, nullptr, &error)) {
    finish(takeFailure(error));
  } else {
    auto made = make();
    if (const auto* failure = std::get_if<Failure>(&made)) {
      finish(*failure);
    } else {
      play(std::get<GRef<GstElement>>(made).get());
    }
  }
  std::unique_lock lock(mutex_);
  if (stopped_) return;
  const auto failure = failure_;
  lock.unlock();
  std::move(ended)(failure);
}

void PipelineRun::play(GstElement* pipeline) {
  const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(pipeline));
  gst_bus_set_sync_handler(bus.get(), received, this, nullptr);
  if (gst_element_set_state(pipeline, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE) {
    finish(Failure{"the pipeline does not start"});
  }
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return stopped_ || finished_; });
  }
  gst_element_set_state(pipeline, GST_STATE_NULL);
  gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
}

// The first reason is the one that counts: others follow from it.
void PipelineRun::finish(std::optional<Failure> failure) {
  const std::lock_guard lock(mutex_);
  if (std::exchange(finished_, true)) return;
  failure_ = std::move(failure);
  changed_.notify_all();
}

GstBusSyncReply PipelineRun::received(GstBus* /*bus*/, GstMessage* message, gpointer self) noexcept {
  auto& run = *static_cast<PipelineRun*>(self);
  contained([&] {
    if (const auto failure = failureIn(message)) {
      run.finish(failure);
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
      run.finish(std::nullopt);
    }
  });
  gst_message_unref(message);
  return GST_BUS_DROP;
}

PipelineRun::Made parsePipeline(const std::string& description) {
  GError* error = nullptr;
  auto pipeline =
      GRef<GstElement>::sink(gst_parse_launch_full(description.c_str(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error));
  if (!pipeline) return takeFailure(error);
  return pipeline;
}

}  // namespace orivex::gtk

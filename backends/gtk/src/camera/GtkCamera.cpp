#include "GtkCamera.h"

#include <chrono>
#include <utility>

#include "../av/GtkRecordPermission.h"
#include "../ui/GtkApplicationPort.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

// Long enough to serve the steps of one capture.
constexpr std::chrono::seconds longestWorkerIdleness{2};

}  // namespace

GtkCamera::GtkCamera(MainQueue& mainQueue, GtkApplicationPort& application, GtkRecordPermission& permission)
    : mainQueue_(mainQueue), application_(application), permission_(permission), worker_(1, longestWorkerIdleness) {}

void GtkCamera::present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) {
  if (screen_) return;
  auto* const host = application_.find(view);
  if (!host) return log::warning("The camera needs a screen in a window to open over.");
  completion_ = std::move(completion);
  const auto mayRecordSound = [this, weak = view.weak_from_this(), name = options.applicationName] {
    const auto known = permission_.answer();
    const auto asking = weak.lock();
    if (!known && asking) permission_.request(name, *asking, nullptr);
    return known;
  };
  screen_ = std::make_unique<CameraScreen>(PipelineThreads{mainQueue_, worker_}, *host, options, mayRecordSound,
                                           [this](CameraScreen::Result result) { done(std::move(result)); });
  leaves_ = view.observeLeaving([this] { close(); });
  resigns_ = application_.observe(ApplicationEvent::willResignActive, [this] { screen_->pause(); });
  becomesActive_ = application_.observe(ApplicationEvent::didBecomeActive, [this] { screen_->resume(); });
}

void GtkCamera::close() {
  resigns_ = {};
  becomesActive_ = {};
  leaves_ = {};
  screen_.reset();
  completion_ = nullptr;
}

void GtkCamera::done(CameraScreen::Result result) {
  auto completion = std::move(completion_);
  close();
  if (result) std::move(completion)(std::move(*result));
}

}  // namespace orivex::gtk

#include "GtkCamera.h"

#include <chrono>
#include <utility>

#include "../ui/GtkApplicationPort.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// Long enough to serve the steps of one capture.
constexpr std::chrono::seconds longestWorkerIdleness{2};

}  // namespace

GtkCamera::GtkCamera(MainQueue& mainQueue, GtkApplicationPort& application)
    : mainQueue_(mainQueue), application_(application), worker_(1, longestWorkerIdleness) {}

GtkCamera::~GtkCamera() = default;

void GtkCamera::present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) {
  if (screen_) return;
  auto* const host = application_.find(view);
  if (!host) return log::print("The camera needs a screen in a window to open over.");
  completion_ = std::move(completion);
  screen_ = std::make_unique<CameraScreen>(PipelineThreads{mainQueue_, worker_}, host->overlay(),
                                           host->window()->safeAreaInsets(), options,
                                           [this](CameraScreen::Result result) { done(std::move(result)); });
  resigns_ = application_.observe(ApplicationEvent::willResignActive, [this] { screen_->pause(); });
  becomesActive_ = application_.observe(ApplicationEvent::didBecomeActive, [this] { screen_->resume(); });
}

void GtkCamera::done(CameraScreen::Result result) {
  resigns_ = {};
  becomesActive_ = {};
  screen_.reset();
  auto completion = std::move(completion_);
  if (result) std::move(completion)(std::move(*result));
}

}  // namespace orivex::gtk

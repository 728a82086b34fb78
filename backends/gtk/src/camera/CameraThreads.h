#pragma once

#include "../WorkerPool.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Where the camera's code runs: widgets on the main thread, and whatever may block, one thing after the other, on one
/// worker. The main queue outlives the worker.
struct CameraThreads {
  MainQueue& main;
  WorkerPool& worker;
};

}  // namespace orivex::gtk

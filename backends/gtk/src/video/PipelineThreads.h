#pragma once

#include "WorkerPool.h"

#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

/// Where the code of cameras and players runs: widgets on the main thread, and whatever may block, one thing after the
/// other, on one worker. The main queue outlives the worker.
struct PipelineThreads {
  MainQueue& main;
  WorkerPool& worker;
};

}  // namespace orivex::gtk

#include "orivex/platform/Platform.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/ProcessState.h"

namespace orivex {

void Platform::install(const Platform* platform) {
  ProcessState::current().platform = platform;
}

bool Platform::isInstalled() {
  return ProcessState::current().platform != nullptr;
}

const Platform& Platform::current() {
  const auto* const installed = ProcessState::current().platform;
  if (!installed) {
    fatalError("OrivexSDK/Platform",
               "no backend is installed. Call orivex::gtk::install() (or orivex::testing::install()) first.");
  }
  return *installed;
}

}  // namespace orivex

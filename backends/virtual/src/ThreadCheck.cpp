#include "ThreadCheck.h"

#include <string>

#include "orivex/platform/base/Log.h"

namespace orivex::testing {

void requireMainThread(const MainQueue& queue, std::string_view operation) {
  if (queue.isMainThread()) return;
  fatalError("OrivexSDK/VirtualDevice", std::string(operation) + " was called off the main thread");
}

}  // namespace orivex::testing

#include "orivex/testing/VirtualWebEngineFactory.h"

#include <utility>

#include "ThreadCheck.h"

namespace orivex::testing {

std::unique_ptr<WebEngine> VirtualWebEngineFactory::make(const WebEngineConfiguration& configuration,
                                                         WebEngineHandlers handlers) {
  requireMainThread(queue_, "WebEngineFactory::make");
  ++made_;
  return std::make_unique<VirtualWebEngine>(registry_, queue_, configuration, std::move(handlers));
}

}  // namespace orivex::testing

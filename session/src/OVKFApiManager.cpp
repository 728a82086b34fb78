#include "orivex/session/OVKFApiManager.h"

#include "orivex/platform/base/ProcessState.h"

namespace orivex {

OVKFApiManager& OVKFApiManager::shared() {
  return ProcessState::current().get<OVKFApiManager>();
}

}  // namespace orivex

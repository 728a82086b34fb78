#include "orivex/testing/VirtualDeviceIdentity.h"

#include "ThreadCheck.h"

namespace orivex::testing {

std::optional<std::string> VirtualDeviceIdentity::identifierForVendor() const {
  requireMainThread(queue_, "Device::identifierForVendor");
  return identifier_;
}

}  // namespace orivex::testing

#include "orivex/media/DeviceIdentifier.h"

#include <algorithm>

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/Device.h"

namespace orivex {
namespace {

char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

const std::string& deviceIdentifier() {
  static std::string kept;
  if (kept.empty()) {
    kept = Platform::current().device.identifierForVendor().value_or("");
    std::transform(kept.begin(), kept.end(), kept.begin(), lowerCase);
  }
  return kept;
}

}  // namespace orivex

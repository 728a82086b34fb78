#include "orivex/media/DeviceIdentifier.h"

#include <algorithm>

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/platform/ports/Device.h"

namespace orivex {
namespace {

char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Of this process, in lower case.
struct KnownIdentifier {
  std::string text;
};

}  // namespace

const std::string& deviceIdentifier() {
  auto& [known] = ProcessState::current().get<KnownIdentifier>();
  if (known.empty()) {
    known = Platform::current().device.identifierForVendor().value_or("");
    std::transform(known.begin(), known.end(), known.begin(), lowerCase);
  }
  return known;
}

}  // namespace orivex

#pragma once

#include <optional>
#include <string>

#include "orivex/platform/ports/Device.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// A machine with the identifier that a test gives it.
class VirtualDeviceIdentity final : public Device {
 public:
  explicit VirtualDeviceIdentity(const MainQueue& queue) : queue_(queue) {}

  std::optional<std::string> identifierForVendor() const override;

  /// Absent: the system gives none.
  void setIdentifierForVendor(std::optional<std::string> identifier) { identifier_ = std::move(identifier); }

 private:
  const MainQueue& queue_;
  std::optional<std::string> identifier_ = "6F1D2C3B-4A59-4E68-8B77-90A1B2C3D4E5";
};

}  // namespace orivex::testing

#pragma once

#include <string>
#include <utility>

#include "orivex/platform/ports/Device.h"

namespace orivex::gtk {

/// The machine as systemd identifies it, for one application and one account: the identifier is derived from the
/// machine's own, the application and the account, so that it cannot be traced back and two applications, or two
/// accounts, cannot be told to share a machine. A machine that was never given an identifier has none.
class MachineDevice final : public Device {
 public:
  explicit MachineDevice(std::string application) : application_(std::move(application)) {}

  std::optional<std::string> identifierForVendor() const override;

 private:
  const std::string application_;
};

}  // namespace orivex::gtk

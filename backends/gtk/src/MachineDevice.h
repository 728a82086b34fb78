#pragma once

#include "orivex/platform/ports/Device.h"

namespace orivex::gtk {

/// The machine as systemd identifies it: the identifier is derived from the machine's own and a constant of this
/// component, so that it cannot be traced back. A machine that was never given an identifier has none.
class MachineDevice final : public Device {
 public:
  std::optional<std::string> identifierForVendor() const override;
};

}  // namespace orivex::gtk

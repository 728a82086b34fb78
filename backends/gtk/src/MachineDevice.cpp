#include "MachineDevice.h"

#include <algorithm>
#include <array>

#include <glib.h>
#include <systemd/sd-id128.h>

namespace orivex::gtk {
namespace {

// Drawn at random for this component. It must never change: every visitor would get a new identifier.
constexpr sd_id128_t component = SD_ID128_MAKE(00, 3f, 75, 0a, b5, 62, 4d, f0, 88, ae, 16, 54, b1, 93, fb, 12);

}  // namespace

std::optional<std::string> MachineDevice::identifierForVendor() const {
  sd_id128_t identifier{};
  if (sd_id128_get_machine_app_specific(component, &identifier) < 0) return std::nullopt;
  std::array<char, SD_ID128_UUID_STRING_MAX> text{};
  sd_id128_to_uuid_string(identifier, text.data());
  std::transform(text.begin(), text.end(), text.begin(), g_ascii_toupper);
  return text.data();
}

}  // namespace orivex::gtk

#include "MachineDevice.h"

#include <algorithm>
#include <array>

#include <glib.h>
#include <systemd/sd-id128.h>

namespace orivex::gtk {
namespace {

// Drawn at random for this component. It must never change: every visitor would get a new identifier.
constexpr sd_id128_t component{
    {0x00, 0x3f, 0x75, 0x0a, 0xb5, 0x62, 0x4d, 0xf0, 0x88, 0xae, 0x16, 0x54, 0xb1, 0x93, 0xfb, 0x12}};

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

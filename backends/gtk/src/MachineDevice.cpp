#include "MachineDevice.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include <glib.h>
#include <systemd/sd-id128.h>
#include <unistd.h>

#include "FreeWith.h"

namespace orivex::gtk {
namespace {

// Drawn at random for this component. Neither it nor the way in which it is used must ever change: every visitor would
// get a new identifier.
constexpr sd_id128_t component{
    {0x00, 0x3f, 0x75, 0x0a, 0xb5, 0x62, 0x4d, 0xf0, 0x88, 0xae, 0x16, 0x54, 0xb1, 0x93, 0xfb, 0x12}};

sd_id128_t identifierOf(const std::string& application, uid_t account) {
  const std::unique_ptr<GChecksum, FreeWith<g_checksum_free>> checksum(g_checksum_new(G_CHECKSUM_SHA256));
  const auto names = application + '\0' + std::to_string(account);
  g_checksum_update(checksum.get(), component.bytes, sizeof component.bytes);
  g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(names.data()), static_cast<gssize>(names.size()));
  std::array<guint8, 32> digest{};
  gsize length = digest.size();
  g_checksum_get_digest(checksum.get(), digest.data(), &length);
  sd_id128_t identifier{};
  std::copy_n(digest.begin(), sizeof identifier.bytes, std::begin(identifier.bytes));
  return identifier;
}

}  // namespace

std::optional<std::string> MachineDevice::identifierForVendor() const {
  sd_id128_t identifier{};
  if (sd_id128_get_machine_app_specific(identifierOf(application_, geteuid()), &identifier) < 0) return std::nullopt;
  std::array<char, SD_ID128_UUID_STRING_MAX> text{};
  sd_id128_to_uuid_string(identifier, text.data());
  std::transform(text.begin(), text.end(), text.begin(), g_ascii_toupper);
  return text.data();
}

}  // namespace orivex::gtk

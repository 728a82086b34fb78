#include <optional>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "../GtkFixture.h"
#include "camera/CameraPortal.h"
#include "glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 30;

// As a visitor who has said yes to this application once.
void allowCamera() {
  const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  const char* const yes[] = {"yes", nullptr};
  const std::unique_ptr<GVariant, FreeWith<g_variant_unref>> reply(g_dbus_connection_call_sync(
      bus.get(), "org.freedesktop.impl.portal.PermissionStore", "/org/freedesktop/impl/portal/PermissionStore",
      "org.freedesktop.impl.portal.PermissionStore", "SetPermission",
      g_variant_new("(sbss^as)", "devices", TRUE, "camera", "", yes), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      nullptr));
  ASSERT_TRUE(reply);
}

TEST(PortalCamera, ConnectsThroughTheDesktopsOwnPortal) {
  gst_init(nullptr, nullptr);
  allowCamera();
  std::optional<std::optional<CameraFailure>> answer;
  const CameraPortal portal([&](std::optional<CameraFailure> failure) { answer = failure; });
  ASSERT_TRUE(wait([&] { return answer.has_value(); }, patience));
  ASSERT_EQ(*answer, std::nullopt);
  for (const char* const time : {"the first time", "again"}) {
    const auto made = CameraPortal::makeSource();
    ASSERT_TRUE(std::holds_alternative<GRef<GstElement>>(made)) << time << ": " << std::get<PipelineError>(made).text;
  }
}

}  // namespace
}  // namespace orivex::gtk

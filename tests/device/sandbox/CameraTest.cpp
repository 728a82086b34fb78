#include <algorithm>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include "Sandbox.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"
#include "support/CameraFixture.h"

namespace orivex::gtk {
namespace {

// As a visitor who has answered the desktop's question for this application once.
void answerForCamera(const char* answer) {
  const auto bus = GRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  const char* const answers[] = {answer, nullptr};
  const std::unique_ptr<GVariant, FreeWith<g_variant_unref>> reply(g_dbus_connection_call_sync(
      bus.get(), "org.freedesktop.impl.portal.PermissionStore", "/org/freedesktop/impl/portal/PermissionStore",
      "org.freedesktop.impl.portal.PermissionStore", "SetPermission",
      g_variant_new("(sbss^as)", "devices", TRUE, "camera", "org.example.Shop", answers), nullptr,
      G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  ASSERT_TRUE(reply);
}

using SandboxedCameraTest = CameraFixture;

TEST_F(SandboxedCameraTest, TakesPhotosOfWhatTheDesktopsCameraSees) {
  ASSERT_TRUE(runsInSandbox());
  answerForCamera("yes");
  for (const char* const time : {"the first time", "again"}) {
    SCOPED_TRACE(time);
    openLive("");
    tapShutter();
    ASSERT_TRUE(waitForReview());
    click("使用");
    ASSERT_TRUE(waitForOutcome());
    const auto& photo = std::get<PickedMedia>(outcomes.at(0));
    const auto pixels = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file(photo.file.filePath()->c_str(), nullptr));
    ASSERT_TRUE(pixels);
    EXPECT_EQ(gdk_pixbuf_get_width(pixels.get()), 1280);
    // Coloured bars, with white and black among them.
    guint length = 0;
    const auto* const bytes = gdk_pixbuf_get_pixels_with_length(pixels.get(), &length);
    EXPECT_LT(*std::min_element(bytes, bytes + length), 10);
    EXPECT_GT(*std::max_element(bytes, bytes + length), 245);
  }
}

TEST_F(SandboxedCameraTest, IsRefusedToAnApplicationThatTheVisitorHasRefusedIt) {
  answerForCamera("no");
  setSources("");
  present();
  ASSERT_TRUE(waitForOutcome());
  EXPECT_EQ(std::get<CameraFailure>(outcomes.at(0)), CameraFailure::accessDenied);
}

}  // namespace
}  // namespace orivex::gtk

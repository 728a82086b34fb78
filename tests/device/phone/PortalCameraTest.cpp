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

TEST(PortalCamera, GivesPicturesThroughTheDesktopsOwnPortal) {
  gst_init(nullptr, nullptr);
  allowCamera();
  std::optional<std::optional<CameraFailure>> answer;
  const CameraPortal portal([&](std::optional<CameraFailure> failure) { answer = failure; });
  ASSERT_TRUE(wait([&] { return answer.has_value(); }, patience));
  ASSERT_EQ(*answer, std::nullopt);
  for (const char* const time : {"the first time", "again"}) {
    const auto made = CameraPortal::makeSource();
    ASSERT_TRUE(std::holds_alternative<GRef<GstElement>>(made)) << std::get<PipelineError>(made).text;
    auto* const source = std::get<GRef<GstElement>>(made).get();
    g_object_set(source, "num-buffers", 3, nullptr);
    const auto pipeline = GRef<GstElement>::sink(gst_pipeline_new(nullptr));
    auto* const sink = gst_element_factory_make("fakesink", nullptr);
    gst_bin_add_many(GST_BIN(pipeline.get()), source, sink, nullptr);
    ASSERT_TRUE(gst_element_link(source, sink));
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(pipeline.get()));
    constexpr auto endings = GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
    const GstMessagePtr message(gst_bus_timed_pop_filtered(bus.get(), 20 * GST_SECOND, endings));
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    ASSERT_TRUE(message) << time;
    EXPECT_EQ(GST_MESSAGE_TYPE(message.get()), GST_MESSAGE_EOS) << time;
  }
}

}  // namespace
}  // namespace orivex::gtk

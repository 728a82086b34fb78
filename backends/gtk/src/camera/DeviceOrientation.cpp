#include "DeviceOrientation.h"

#include <memory>
#include <string_view>
#include <utility>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"

namespace orivex::gtk {
namespace {

constexpr const char* service = "net.hadess.SensorProxy";
constexpr const char* objectPath = "/net/hadess/SensorProxy";
constexpr const char* orientationProperty = "AccelerometerOrientation";

// The service names the edge of the device that points up.
int degreesFor(std::string_view orientation) {
  if (orientation == "left-up") return 90;
  if (orientation == "bottom-up") return 180;
  if (orientation == "right-up") return 270;
  return 0;
}

}  // namespace

DeviceOrientation::DeviceOrientation(std::function<void()> changed) : changed_(std::move(changed)) {
  const auto made = asyncCallback(alive_.guard([this](GObject* /*source*/, GAsyncResult* result) {
    // Without a system bus there is no service either.
    auto sensor = GRef<GDBusProxy>::adopt(g_dbus_proxy_new_for_bus_finish(result, nullptr));
    if (sensor) connected(std::move(sensor));
  }));
  g_dbus_proxy_new_for_bus(G_BUS_TYPE_SYSTEM, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START_AT_CONSTRUCTION, nullptr, service,
                           objectPath, service, nullptr, made.function, made.data);
}

DeviceOrientation::~DeviceOrientation() {
  if (sensor_) call("ReleaseAccelerometer");
}

void DeviceOrientation::call(const char* method) {
  g_dbus_proxy_call(sensor_.get(), method, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

void DeviceOrientation::connected(GRef<GDBusProxy> sensor) {
  const GCharPtr owner(g_dbus_proxy_get_name_owner(sensor.get()));
  if (!owner) return;
  sensor_ = std::move(sensor);
  propertiesChanged_ = SignalConnection::connect(sensor_.get(), "g-properties-changed", [this] { read(); });
  // The service watches its sensor only for those who ask for it.
  call("ClaimAccelerometer");
  read();
}

void DeviceOrientation::read() {
  const GVariantPtr value(g_dbus_proxy_get_cached_property(sensor_.get(), orientationProperty));
  if (!value || !g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) return;
  const std::string_view orientation(g_variant_get_string(value.get(), nullptr));
  // Lying flat on a table it is neither: the way it was held before counts.
  if (orientation == "undefined") return;
  degrees_ = degreesFor(orientation);
  changed_();
}

}  // namespace orivex::gtk

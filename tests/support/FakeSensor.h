#pragma once

#include <string>
#include <utility>

#include "BusService.h"

namespace orivex::gtk {

/// Lets this process take its session's bus for the system's. Call it before anything asks for either.
inline void useFakeSystemBus() {
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", g_getenv("DBUS_SESSION_BUS_ADDRESS"), TRUE);
}

/// A desktop's sensor service that tells one orientation, on that bus.
class FakeSensor {
 public:
  explicit FakeSensor(std::string orientation) : orientation_(std::move(orientation)) {
    service_.add(
        "/net/hadess/SensorProxy",
        "<interface name='net.hadess.SensorProxy'><method name='ClaimAccelerometer'/><method "
        "name='ReleaseAccelerometer'/>"
        "<property name='AccelerometerOrientation' type='s' access='read'/></interface>",
        [this](auto&, auto*) {
          claimed_ = true;
          return g_variant_new("()");
        },
        [this] { return g_variant_new_string(orientation_.c_str()); });
    service_.own("net.hadess.SensorProxy");
  }

  /// Whether somebody asked it to watch, and so knows the orientation.
  bool isClaimed() const { return claimed_; }

 private:
  const std::string orientation_;
  bool claimed_ = false;
  BusService service_{g_getenv("DBUS_SYSTEM_BUS_ADDRESS")};
};

}  // namespace orivex::gtk

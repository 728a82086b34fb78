#pragma once

#include <functional>

#include <gio/gio.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Alive.h"

namespace orivex::gtk {

/// How the device is held, by the desktop's sensor service (net.hadess.SensorProxy); without the service a device lies
/// or stands as it always does. Main thread.
class DeviceOrientation {
 public:
  /// `changed` is called when the service has answered and whenever the device is turned.
  explicit DeviceOrientation(std::function<void()> changed);
  DeviceOrientation(const DeviceOrientation&) = delete;
  DeviceOrientation& operator=(const DeviceOrientation&) = delete;
  ~DeviceOrientation();

  /// By how much, clockwise, a picture of a camera on the device's back has to be turned to be upright; 0 until the
  /// service has answered.
  int degrees() const { return degrees_; }

 private:
  void connected(GRef<GDBusProxy> sensor);
  void read();
  void call(const char* method);

  const std::function<void()> changed_;
  int degrees_ = 0;
  GRef<GDBusProxy> sensor_;
  SignalConnection propertiesChanged_;
  Alive alive_;
};

}  // namespace orivex::gtk

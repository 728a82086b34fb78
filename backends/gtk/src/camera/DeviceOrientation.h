#pragma once

#include <functional>
#include <string_view>

#include <gio/gio.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

namespace orivex::gtk {

/// How the device is held, as the desktop's sensor service (net.hadess.SensorProxy) tells; without the service a
/// device lies or stands as it always does. Main thread.
class DeviceOrientation {
 public:
  /// `changed` is called with the degrees, clockwise, by which a picture of a camera on the device's back has to be
  /// turned to be upright: first when the service has answered, and never without one.
  explicit DeviceOrientation(std::function<void(int degrees)> changed);
  DeviceOrientation(const DeviceOrientation&) = delete;
  DeviceOrientation& operator=(const DeviceOrientation&) = delete;
  ~DeviceOrientation();

  /// 0 until the service has told otherwise.
  int degrees() const { return degrees_; }

 private:
  void connected(GRef<GDBusProxy> sensor);
  void read();

  std::function<void(int)> changed_;
  int degrees_ = 0;
  GRef<GCancellable> cancellable_ = GRef<GCancellable>::adopt(g_cancellable_new());
  GRef<GDBusProxy> sensor_;
  SignalConnection propertiesChanged_;
};

/// Degrees for a name by which the service tells which of the device's edges points up; 0 for "normal" and for names
/// that it does not use.
int degreesFor(std::string_view orientation);

}  // namespace orivex::gtk

#pragma once

#include <string>

#include <gio/gio.h>

#include "glib/GRef.h"

namespace orivex::gtk {

/// Lets this process take its session's bus for the system's. Call it before anything asks for either.
void useFakeSystemBus();

/// A desktop's sensor service that tells one orientation, on that bus.
class FakeSensor {
 public:
  explicit FakeSensor(std::string orientation);
  FakeSensor(const FakeSensor&) = delete;
  FakeSensor& operator=(const FakeSensor&) = delete;
  ~FakeSensor();

 private:
  const std::string orientation_;
  GRef<GDBusConnection> connection_;
  guint object_ = 0;
};

}  // namespace orivex::gtk

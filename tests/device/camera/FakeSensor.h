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

  /// Whether somebody asked it to watch, and so knows the orientation.
  bool isClaimed() const { return claimed_; }

 private:
  static void call(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                   const char* method, GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self);
  static GVariant* property(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                            const char* name, GError** error, gpointer self);

  const std::string orientation_;
  bool claimed_ = false;
  GRef<GDBusConnection> connection_;
  guint object_ = 0;
};

}  // namespace orivex::gtk

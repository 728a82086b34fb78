#pragma once

#include <optional>
#include <string>

#include <gio/gio.h>

#include "CameraSource.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// The desktop's portal for cameras, for hosts in a sandbox. It asks the visitor and remembers the answer.
class CameraPortal {
 public:
  /// Asks whether this application may use the camera; nothing means that it may. `answered` is called once, later, and
  /// never after the portal was destroyed; it may destroy the portal. Main thread.
  explicit CameraPortal(Once<void(std::optional<CameraFailure>)> answered);
  CameraPortal(const CameraPortal&) = delete;
  CameraPortal& operator=(const CameraPortal&) = delete;
  /// A portal that still shows its question takes it back.
  ~CameraPortal();

  /// A source of the camera's frames, with a connection of its own. Not on the main thread; blocks.
  static ElementOrError makeSource();

 private:
  void request();
  void subscribe();
  void unsubscribe();
  void fail(const GError& error);
  void end(std::optional<CameraFailure> failure);

  Once<void(std::optional<CameraFailure>)> answered_;
  GRef<GDBusConnection> bus_;
  std::string requestPath_;
  guint response_ = 0;  // subscriptions; 0 without a question
  guint owner_ = 0;
  Alive alive_;
};

}  // namespace orivex::gtk

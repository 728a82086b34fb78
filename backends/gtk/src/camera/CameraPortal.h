#pragma once

#include <memory>
#include <optional>

#include "CameraSource.h"

#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// The desktop's portal for cameras, for hosts in a sandbox. It asks the visitor and remembers the answer.
class CameraPortal {
 public:
  /// Asks whether this application may use the camera; nothing means that it may. `answered` is called once, later, and
  /// never after the portal was destroyed. Main thread.
  explicit CameraPortal(Once<void(std::optional<CameraFailure>)> answered);
  CameraPortal(const CameraPortal&) = delete;
  CameraPortal& operator=(const CameraPortal&) = delete;
  ~CameraPortal();

  /// A source of the camera's frames, with a connection of its own. Not on the main thread; blocks.
  static ElementOrError makeSource();

 private:
  class Request;

  std::shared_ptr<Request> request_;
};

}  // namespace orivex::gtk

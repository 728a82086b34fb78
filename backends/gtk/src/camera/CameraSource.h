#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "../glib/GRef.h"
#include "../video/Elements.h"
#include "../video/GstPointers.h"

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

enum class CameraFacing { back, front };

/// A camera that can be opened.
struct CameraSource {
  using LaunchFragment = std::string;
  struct Portal {};  ///< the one that the desktop lends to a host in a sandbox

  CameraFacing facing = CameraFacing::back;
  std::variant<GRef<GstDevice>, LaunchFragment, Portal> origin;
};

/// The environment variable that names sources to use instead of the device's cameras: GStreamer launch fragments, one
/// a line. The first stands for the camera on the back, the second for the one on the front.
inline constexpr const char* cameraSourceVariable = "ORIVEX_CAMERA_SOURCE";

/// The device's cameras, those on its back first. Blocks while devices are looked for.
std::vector<CameraSource> findCameras();

/// Which way a camera looks by what its driver says, or else by its name. One that does not tell looks at whoever sits
/// before the screen, as a laptop's or a plugged-in one does.
CameraFacing facingOf(std::string_view location, std::string_view name);

/// A source of the camera's frames, raw or JPEG.
ElementOrError makeSource(const CameraSource& source);

/// What to ask of it, for frames of about `captureSize` (pixels).
GstCapsPtr formatFor(const CameraSource& source, Size captureSize);

}  // namespace orivex::gtk

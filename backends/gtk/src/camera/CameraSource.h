#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "../av/Pipeline.h"

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

/// Which way a camera faces by the location that its driver reports, or else by its name; without either the front, as
/// a laptop's or a plugged-in one does.
CameraFacing facingOf(std::string_view location, std::string_view name);

/// A source of the camera's frames, raw or JPEG.
ElementOrError makeSource(const CameraSource& source);

/// What to ask of it, for frames of about `captureSize` (pixels).
GstCapsPtr formatFor(const CameraSource& source, Size captureSize);

/// The one of a camera's formats, raw or JPEG, whose size comes nearest to `wanted` (pixels); of several, the one with
/// the most frames a second up to 30, raw before JPEG. Null when none can be used. Any thread.
GstCapsPtr bestFormat(const GstCaps& offered, Size wanted);

}  // namespace orivex::gtk

#pragma once

#include "../video/Elements.h"

#include "orivex/platform/ports/Camera.h"

namespace orivex::gtk {

/// What the error means to somebody who wants to use a camera that has not shown anything yet.
CameraFailure failureOf(const PipelineError& error);

}  // namespace orivex::gtk

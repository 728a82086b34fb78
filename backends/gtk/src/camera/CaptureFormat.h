#pragma once

#include "../video/GstPointers.h"

#include "orivex/platform/base/Geometry.h"

namespace orivex::gtk {

/// The one of a camera's formats, raw or JPEG, whose size comes nearest to `wanted` (pixels); of several, the one with
/// the most frames a second up to 30, raw before JPEG. Null when there is none to take. Any thread.
GstCapsPtr bestFormat(const GstCaps& offered, Size wanted);

/// For a source that says nothing of its formats: `wanted` if it can, or else whatever it has.
GstCapsPtr preferredFormats(Size wanted);

}  // namespace orivex::gtk

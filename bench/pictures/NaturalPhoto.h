#pragma once

#include "device/media/PlainJpeg.h"

namespace orivex::gtk {

/// A picture with the statistics of a photo: leaves of all sizes that hide each other, a texture on each whose contrast
/// falls with its frequency, soft focus in parts, and a sensor's noise. The same for the same `seed`.
RgbImage naturalPhoto(unsigned width, unsigned height, unsigned seed);

}  // namespace orivex::gtk

#pragma once

#include <vector>

#include "FileBytes.h"

#include "orivex/platform/ports/Upload.h"

namespace orivex {

/// The traces of a file that is made of boxes (ISO/IEC 14496-12): MP4 and QuickTime films, HEIF and AVIF pictures.
std::vector<Overwrite> boxTraces(FileBytes& file);

}  // namespace orivex

#pragma once

#include <vector>

#include "FileBytes.h"

#include "orivex/platform/ports/Upload.h"

namespace orivex {

/// The traces of a JPEG: metadata, comments, and whatever cameras put behind the picture.
std::vector<Overwrite> jpegTraces(FileBytes& file);

}  // namespace orivex

#pragma once

#include <string>
#include <vector>

#include "orivex/platform/ports/Upload.h"

namespace orivex {

/// What of the picture or video at `path` tells more than it shows, above all where it was taken: to be overwritten in
/// what is sent. The rest of the file stays as it is, to the byte; how a JPEG is to be turned stays too. Empty for
/// files of other kinds and for what cannot be read. Not on the main thread: reads pictures to their end.
std::vector<Overwrite> personalTraces(const std::string& path);

}  // namespace orivex

#pragma once

#include <string>
#include <vector>

#include "orivex/platform/ports/HttpClient.h"

namespace orivex {

class FileBytes;

/// What of the picture or video at `path` tells more than it shows, above all where it was taken: to be overwritten in
/// what is sent. The rest of the file stays as it is, to the byte; how a JPEG is to be turned stays too. Empty for
/// files of other kinds and for what cannot be read. Not on the main thread: reads pictures to their end.
std::vector<Overwrite> personalTraces(const std::string& path);

/// Of a JPEG: metadata, comments, and whatever cameras put behind the picture.
std::vector<Overwrite> jpegTraces(FileBytes& file);

/// Of a file that is made of boxes (ISO/IEC 14496-12): MP4 and QuickTime films, HEIF and AVIF pictures.
std::vector<Overwrite> boxTraces(FileBytes& file);

}  // namespace orivex

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <turbojpeg.h>

#include "orivex/platform/ports/MediaReading.h"

namespace orivex::gtk {

struct DestroyTurboJpeg {
  void operator()(void* handle) const { tjDestroy(handle); }
};

/// A compressor or decompressor of libturbojpeg.
using TurboJpeg = std::unique_ptr<void, DestroyTurboJpeg>;

/// A JPEG in libturbojpeg's own memory. There is room for the largest, of which the system gives what is written;
/// where that is too much, libturbojpeg begins with little and takes copies into more.
class TurboBuffer {
 public:
  TurboBuffer(int width, int height, int subsampling)
      : length(tjBufSize(width, height, subsampling)), bytes(tjAlloc(static_cast<int>(length))) {
    if (!bytes) length = 0;
  }
  TurboBuffer(const TurboBuffer&) = delete;
  TurboBuffer& operator=(const TurboBuffer&) = delete;
  ~TurboBuffer() { tjFree(bytes); }

  /// The picture with an ICC profile, unless that is empty.
  std::string withProfile(std::string_view profile) const;

  unsigned long length;
  unsigned char* bytes;
};

/// libjpeg's scale of whole numbers for `quality` from 0 to 1.
int turboQuality(double quality);

/// Rows of pixels in memory, upright.
struct Pixels {
  const unsigned char* bytes;
  int width;
  int height;
  int rowBytes;
  TJPF format;
};

/// Encodes pixels. `quality` is from 0 to 1; `profile` is the ICC profile of their colours, or empty.
std::variant<JpegImage, Failure> encodePixels(const Pixels& pixels, double quality, std::string_view profile = {});

}  // namespace orivex::gtk

#pragma once

#include <optional>
#include <variant>

#include "JpegPlanes.h"
#include "JpegSource.h"
#include "JpegTarget.h"

#include "orivex/platform/ports/ImageCodec.h"

namespace orivex::gtk {

/// Encodes a JPEG anew without leaving its own colour space and subsampling: luma and chroma samples go from decoder to
/// encoder, so that nothing is converted, and an upright picture needs the memory of a few rows only.
///
/// No quantisation step becomes finer than it was in the file: a picture that was saved at less than the quality asked
/// for keeps its own, instead of growing without getting better.
class JpegRecoder {
 public:
  JpegRecoder(std::FILE* file, double quality) : file_(file), quality_(quality) {}

  /// Nothing when the picture has colours other than YCbCr or grey, or subsampling that cannot be written back. Once.
  std::optional<std::variant<JpegImage, Failure>> recode();

 private:
  bool takesColors();
  std::uint64_t heldBytes();
  std::variant<JpegImage, Failure> write();
  void prepareTarget();
  void keepCoarserSteps();
  void stream(JpegPlanes& rows);
  void readAll(JpegPlanes& picture);
  void writeTurned(const JpegPlanes& picture, JpegPlanes& rows);

  std::FILE* file_;
  double quality_;
  JpegErrors errors_;
  JpegSource source_{errors_};
  JpegTarget target_{errors_};
  Turn turn_;
};

}  // namespace orivex::gtk

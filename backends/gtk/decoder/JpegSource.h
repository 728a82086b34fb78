#pragma once

#include <cstdint>
#include <string>

#include "JpegErrors.h"
#include "Turn.h"

namespace orivex::gtk {

/// A JPEG file as libjpeg decodes it. Its functions belong inside `JpegErrors::run`, unless said otherwise.
class JpegSource {
 public:
  explicit JpegSource(JpegErrors& errors);
  JpegSource(const JpegSource&) = delete;
  JpegSource& operator=(const JpegSource&) = delete;
  ~JpegSource() { jpeg_destroy_decompress(&info_); }

  jpeg_decompress_struct& info() { return info_; }

  /// Reads up to the first scan of the picture, with what tells its colours and how it is to be turned.
  void readHeader(std::FILE* file);

  /// Bytes that libjpeg holds at once to decode the picture. Anywhere, once the header was read.
  std::uint64_t heldBytes();

  /// Anywhere, once the header was read.
  Turn turn() const;

  /// What of the picture's ICC profile its colours need, see `colorsOfProfile`; empty without one. Outside of `run`.
  std::string colorProfile(JpegErrors& errors);

 private:
  static void countScans(j_common_ptr info);

  jpeg_decompress_struct info_{};
  jpeg_progress_mgr progress_{};
};

}  // namespace orivex::gtk

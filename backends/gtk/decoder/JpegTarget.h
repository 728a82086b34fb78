#pragma once

#include <array>
#include <string>
#include <string_view>

#include "JpegErrors.h"

namespace orivex::gtk {

/// A JPEG in memory as libjpeg encodes it. Its functions belong inside `JpegErrors::run`, unless said otherwise.
class JpegTarget {
 public:
  explicit JpegTarget(JpegErrors& errors) { info_.err = errors.manager(); }
  JpegTarget(const JpegTarget&) = delete;
  JpegTarget& operator=(const JpegTarget&) = delete;
  ~JpegTarget() { jpeg_destroy_compress(&info_); }

  jpeg_compress_struct& info() { return info_; }

  /// Sets the usual parameters for pixels or samples in `colorSpace`. `quality` is from 0 to 1; the quantisation tables
  /// are those of libjpeg's scale from 0 to 100.
  void prepare(unsigned width, unsigned height, J_COLOR_SPACE colorSpace, double quality);

  /// Writes the header, with a colour profile unless it is empty.
  void start(std::string_view profile);

  /// The finished JPEG. Anywhere, once.
  std::string takeBytes() { return std::move(bytes_); }

 private:
  struct Destination {
    jpeg_destination_mgr manager;  // in front: libjpeg hands out its address
    JpegTarget* owner;
  };

  static void begin(j_compress_ptr info);
  static boolean flush(j_compress_ptr info) noexcept;
  static void end(j_compress_ptr info) noexcept;
  void append(std::size_t count);

  jpeg_compress_struct info_{};
  Destination destination_{};
  std::array<JOCTET, 16384> chunk_{};
  std::string bytes_;
};

}  // namespace orivex::gtk

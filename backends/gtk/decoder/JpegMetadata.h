#pragma once

#include <string>
#include <string_view>

namespace orivex::gtk {

/// What a JPEG carries beside its picture and is needed to show that.
struct JpegMetadata {
  int orientation = 1;  ///< as in Exif
  std::string profile;  ///< ICC profile; may be empty

  /// Of the file that `jpeg` holds. What is damaged counts as missing.
  static JpegMetadata of(std::string_view jpeg);
};

}  // namespace orivex::gtk

#pragma once

#include <memory>
#include <string>
#include <variant>

#include "../av/Samples.h"

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/ports/PhotoLibrary.h"

namespace orivex::gtk {

/// An empty file for a capture, in a folder that only this user can open. It is deleted with this object unless it was
/// released. Any thread, one at a time.
class CaptureFile {
 public:
  /// Its type and the time of day make its name, as "photo-20240611-153012-x3Fq8a.jpg".
  static std::variant<std::shared_ptr<CaptureFile>, Failure> make(MediaType type, const char* suffix);

  /// A frame as a JPEG. Blocks.
  static std::variant<std::shared_ptr<CaptureFile>, Failure> makePhoto(const SharedSample& frame);

  CaptureFile(MediaType type, std::string path) : type_(type), path_(std::move(path)) {}
  CaptureFile(const CaptureFile&) = delete;
  CaptureFile& operator=(const CaptureFile&) = delete;
  ~CaptureFile();

  MediaType type() const { return type_; }
  const std::string& path() const { return path_; }

  /// From here on the file belongs to the caller.
  PickedMedia release();

 private:
  const MediaType type_;
  const std::string path_;
  bool owned_ = true;
};

/// Where captures lie.
std::string captureFolder();

}  // namespace orivex::gtk

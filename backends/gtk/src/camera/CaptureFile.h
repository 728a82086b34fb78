#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Url.h"

namespace orivex::gtk {

/// An empty file for a capture, in a folder that only this user can open. It is deleted with this object unless it was
/// given away. Any thread, one at a time.
class CaptureFile {
 public:
  /// `kind` and the time of day make its name, as "photo-20240611-153012-x3Fq8a.jpg".
  static std::variant<std::shared_ptr<CaptureFile>, Failure> make(std::string_view kind, std::string_view suffix);

  explicit CaptureFile(std::string path) : path_(std::move(path)) {}
  CaptureFile(const CaptureFile&) = delete;
  CaptureFile& operator=(const CaptureFile&) = delete;
  ~CaptureFile();

  const std::string& path() const { return path_; }

  /// From here on the file belongs to the caller.
  Url giveAway();

 private:
  const std::string path_;
  bool owned_ = true;
};

/// Where captures lie.
std::string captureFolder();

}  // namespace orivex::gtk

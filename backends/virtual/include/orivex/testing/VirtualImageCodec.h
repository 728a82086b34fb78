#pragma once

#include <map>
#include <string>
#include <vector>

#include "orivex/platform/ports/ImageCodec.h"

namespace orivex::testing {

/// Gives the JPEGs that a test has put in place of decoded pictures.
class VirtualImageCodec final : public ImageCodec {
 public:
  struct Call {
    std::string path;
    double quality = 0;
    bool operator==(const Call&) const = default;
  };

  std::variant<JpegImage, Failure> jpeg(const std::string& path, double quality) const override;

  /// What the picture at `path` becomes. Any other path is no picture.
  void put(const std::string& path, JpegImage image) { images_.insert_or_assign(path, std::move(image)); }

  const std::vector<Call>& calls() const { return calls_; }
  void forgetCalls() { calls_.clear(); }

 private:
  std::map<std::string, JpegImage> images_;
  mutable std::vector<Call> calls_;
};

}  // namespace orivex::testing

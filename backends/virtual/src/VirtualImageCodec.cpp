#include "orivex/testing/VirtualImageCodec.h"

namespace orivex::testing {

std::variant<JpegImage, Failure> VirtualImageCodec::jpeg(const std::string& path, double quality) const {
  calls_.push_back({path, quality});
  const auto found = images_.find(path);
  if (found == images_.end()) return Failure{path + " is not a picture"};
  return found->second;
}

}  // namespace orivex::testing

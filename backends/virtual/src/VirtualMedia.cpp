#include "orivex/testing/VirtualMedia.h"

#include <algorithm>

#include "orivex/platform/base/Log.h"
#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {

std::optional<std::string> VirtualTypeRegistry::mimeType(std::string_view extension) const {
  std::string lower(extension);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter; });
  const auto found = types_.find(lower);
  return found == types_.end() ? std::nullopt : std::optional(found->second);
}

std::variant<std::string, Failure> VirtualTypeRegistry::typeIdentifier(const std::string& path) const {
  if (const auto failure = failures_.find(path); failure != failures_.end()) return Failure{failure->second};
  const auto dot = path.rfind('.');
  return mimeType(dot == std::string::npos ? "" : path.substr(dot + 1)).value_or("application/octet-stream");
}

bool VirtualTypeRegistry::conformsToImage(const std::string& typeIdentifier) const {
  return typeIdentifier.starts_with("image/");
}

std::variant<JpegImage, Failure> VirtualImageCodec::jpeg(const std::string& path, double quality) const {
  calls_.push_back({path, quality});
  const auto found = images_.find(path);
  if (found == images_.end()) return Failure{path + " is not a picture"};
  return found->second;
}

std::variant<VideoFacts, Failure> VirtualMediaProbe::probeVideo(const std::string& path) const {
  if (queue_.isMainThread())
    fatalError("OrivexSDK/VirtualDevice", "MediaProbe::probeVideo was called on the main thread");
  const auto found = videos_.find(path);
  if (found == videos_.end()) return Failure{path + " is not a video"};
  return found->second;
}

}  // namespace orivex::testing

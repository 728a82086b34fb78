#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/MediaReading.h"
#include "orivex/platform/ports/TypeRegistry.h"

namespace orivex::testing {

/// Knows the kinds of files that a test names; a file's type identifier is the MIME type of its extension. At first it
/// knows gif, jpeg, jpg, mp4, pdf, png, txt, wav and webp.
class VirtualTypeRegistry final : public TypeRegistry {
 public:
  std::optional<std::string> mimeType(std::string_view extension) const override;
  std::variant<std::string, Failure> typeIdentifier(const std::string& path) const override;
  bool conformsToImage(const std::string& typeIdentifier) const override;

  /// `extension` in lower case.
  void add(std::string extension, std::string mimeType) {
    types_.insert_or_assign(std::move(extension), std::move(mimeType));
  }

  /// Asking for the type of `path` fails from now on.
  void fail(const std::string& path, std::string reason) { failures_.insert_or_assign(path, std::move(reason)); }

 private:
  std::map<std::string, std::string, std::less<>> types_{
      {"gif", "image/gif"},  {"jpeg", "image/jpeg"},     {"jpg", "image/jpeg"},
      {"mp4", "video/mp4"},  {"pdf", "application/pdf"}, {"png", "image/png"},
      {"txt", "text/plain"}, {"wav", "audio/x-wav"},     {"webp", "image/webp"}};
  std::map<std::string, std::string> failures_;
};

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

/// Gives the facts that a test has put in place of measured videos.
class VirtualMediaProbe final : public MediaProbe {
 public:
  explicit VirtualMediaProbe(const MainQueue& queue) : queue_(queue) {}

  std::variant<VideoFacts, Failure> probeVideo(const std::string& path) const override;

  /// What the video at `path` is. Any other path is no video.
  void put(const std::string& path, VideoFacts facts) { videos_.insert_or_assign(path, std::move(facts)); }

 private:
  const MainQueue& queue_;
  std::map<std::string, VideoFacts> videos_;
};

}  // namespace orivex::testing

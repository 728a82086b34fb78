#include "MediaDescriptions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "Attachments.h"
#include "DataAddress.h"
#include "PersonalTraces.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/ImageCodec.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/MediaProbe.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

/// How an item is described, as it was asked for.
struct Terms {
  double jpegQuality;
  std::int64_t videoLimit;
  std::int64_t documentLimit;  // the one that is quoted
};

/// What a worker found of an item.
struct Inspected {
  UploadFileInfoModel description{};
  std::vector<Overwrite> traces{};       // of a video
  std::optional<std::string> refusal{};  // what the visitor reads instead
};

Inspected refuse(const std::string& text, const Failure& failure) {
  log::debugPrint(failure.description);
  return {.refusal = text};
}

UploadFileInfoModel named(const std::string& path, FileType type) {
  UploadFileInfoModel description;
  description.name = fileName(path);
  description.type = rawValue(type);
  return description;
}

Inspected inspectImage(const std::string& path, const Terms& terms) {
  auto result = Platform::current().imageCodec.jpeg(path, terms.jpegQuality);
  if (const auto* failure = std::get_if<Failure>(&result)) return refuse("无法读取照片:" + fileName(path), *failure);
  const auto& jpeg = std::get<JpegImage>(result);
  auto description = named(path, FileType::Image);
  description.base64Str = jpegDataAddress(jpeg.bytes);
  description.height = jpeg.size.height;
  description.width = jpeg.size.width;
  description.suffix = "jpg";
  description.size = static_cast<std::int64_t>(jpeg.bytes.size());
  description.mimeType = "image/jpeg";
  return {std::move(description)};
}

void logFacts(const VideoFacts& facts) {
  log::debugPrint("Video duration: " + doubleText(facts.duration) + " seconds");
  log::debugPrint("Video width: " + doubleText(facts.size.width) + " pixels");
  log::debugPrint("Video height: " + doubleText(facts.size.height) + " pixels");
}

Inspected inspectVideo(const Url& file, const std::string& path, const Terms& terms) {
  const auto size = OVKFApiHelper::fileSize(file);
  if (size > terms.videoLimit) return {.refusal = videoTooLargeText(terms.documentLimit)};
  auto result = Platform::current().mediaProbe.probeVideo(path);
  if (const auto* failure = std::get_if<Failure>(&result)) return refuse("无法读取视频:" + fileName(path), *failure);
  const auto& facts = std::get<VideoFacts>(result);
  logFacts(facts);
  auto description = named(path, FileType::Video);
  if (!facts.firstFrameJpeg.empty()) description.base64Str = jpegDataAddress(facts.firstFrameJpeg);
  description.height = facts.size.height;
  description.width = facts.size.width;
  description.duration = facts.duration;
  description.suffix = fileExtension(path);
  description.size = size;
  description.mimeType = UploadManager::mimeType(description.suffix);
  return {std::move(description), personalTraces(path)};
}

Inspected inspect(const PickedMedia& item, const Terms& terms) {
  const auto path = item.file.filePath();
  if (!path) return {.refusal = "无效的路径:" + item.file.absoluteString()};
  return item.mediaType == MediaType::image ? inspectImage(*path, terms) : inspectVideo(item.file, *path, terms);
}

/// The items of one choice on their way. Kept alive by what it waits for.
class Batch : public std::enable_shared_from_this<Batch> {
 public:
  Batch(std::vector<PickedMedia> items, Terms terms, std::weak_ptr<ViewController> screen,
        ChatManager::PickedFiles completion)
      : items_(std::move(items)),
        terms_(terms),
        screen_(std::move(screen)),
        completion_(std::move(completion)),
        descriptions_(items_.size()) {}

  // A decoded photo takes memory, and more workers than cores gain nothing.
  static constexpr int atOnce = 2;

  void proceed() {
    if (!stillShows(screen_)) next_ = items_.size();
    while (running_ < atOnce && next_ < items_.size()) begin(next_++);
    if (running_ == 0) finish();
  }

 private:
  void begin(std::size_t index) {
    ++running_;
    auto& queue = Platform::current().mainQueue;
    queue.global([self = shared_from_this(), index, &queue, item = items_[index], terms = terms_]() mutable {
      queue.async([self = std::move(self), index, inspected = inspect(item, terms)]() mutable {
        self->inspected(index, std::move(inspected));
      });
    });
  }

  void inspected(std::size_t index, Inspected result) {
    if (result.refusal) {
      tellAboutAttachment(screen_, *result.refusal);
      end();
      return;
    }
    const bool isVideo = items_[index].mediaType == MediaType::video;
    if (isVideo && !stillShows(screen_)) return end();
    descriptions_[index] = std::move(result.description);
    isVideo ? upload(index, std::move(result.traces)) : end();
  }

  void upload(std::size_t index, std::vector<Overwrite> traces) {
    const auto& description = *descriptions_[index];
    UploadManager().uploadFile(
        FilePart::Path{items_[index].file.filePath().value_or(""), std::move(traces)}, *description.name,
        *description.mimeType,
        [self = shared_from_this(), index](const UploadResult& result) { self->uploaded(index, result); });
  }

  void uploaded(std::size_t index, const UploadResult& result) {
    if (const auto* failure = std::get_if<UploadFailure>(&result)) {
      descriptions_[index].reset();
      const auto again = std::make_shared<Batch>(std::vector{items_[index]}, terms_, screen_, completion_);
      tellAboutFailedUpload(screen_, failure->message, [again] { again->proceed(); });
    } else {
      log::debugPrint("Upload Success ");
      descriptions_[index]->url = std::get<UploadResposeModel>(result).url;
    }
    end();
  }

  void end() {
    --running_;
    proceed();
  }

  void finish() {
    std::vector<UploadFileInfoModel> described;
    for (auto& description : descriptions_) {
      if (description) described.push_back(std::move(*description));
    }
    completion_(std::move(described));
  }

  const std::vector<PickedMedia> items_;
  const Terms terms_;
  const std::weak_ptr<ViewController> screen_;
  const ChatManager::PickedFiles completion_;
  std::vector<std::optional<UploadFileInfoModel>> descriptions_;
  std::size_t next_ = 0;
  int running_ = 0;
};

}  // namespace

void describeMedia(std::vector<PickedMedia> items, double jpegQuality, std::weak_ptr<ViewController> screen,
                   ChatManager::PickedFiles completion) {
  auto& store = OVKFApiManager::shared();
  const auto batch = std::make_shared<Batch>(std::move(items), Terms{jpegQuality, store.videoSize, store.fileSize},
                                             std::move(screen), std::move(completion));
  Platform::current().mainQueue.async([batch] { batch->proceed(); });
}

}  // namespace orivex

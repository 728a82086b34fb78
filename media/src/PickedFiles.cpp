#include "PickedFiles.h"

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <utility>

#include "PersonalTraces.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/models/Base64.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ports/MediaReading.h"
#include "orivex/platform/ports/TypeRegistry.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

// Last component of a path; the path itself without one. Made valid UTF-8: what is described to the page, sent in a
// form or shown is text, and a name on disk may be none.
std::string fileName(const std::string& path) {
  auto name = std::filesystem::path(path).filename().string();
  return validUtf8(name.empty() ? path : name);
}

std::string jpegDataAddress(std::string_view jpeg) {
  std::string address = "data:image/jpeg;base64,";
  appendBase64(address, {reinterpret_cast<const std::uint8_t*>(jpeg.data()), jpeg.size()});
  return address;
}

void setPicture(UploadFileInfoModel& description, const std::string& jpeg, Size size) {
  if (!jpeg.empty()) description.base64Str = jpegDataAddress(jpeg);
  description.height = size.height;
  description.width = size.width;
}

std::string unusableText(const std::string& path) {
  return tr("无效的路径:%1", {validUtf8(path)});
}

// Documents and videos alike are told the limit of documents: what is compared differs, what is read is one number.
std::string tooLargeText(const char* chinese, std::int64_t documentLimit) {
  constexpr std::int64_t mebibyte = 1048576;
  return tr(chinese, {std::to_string(documentLimit / mebibyte)});
}

/// What is uploaded from disk, without what it tells of its owner.
FilePart filePart(const std::string& path, const UploadFileInfoModel& description) {
  return {UploadManager::fileField, FilePart::Path{path, personalTraces(path)}, *description.name,
          *description.mimeType};
}

class Document final : public Attachment {
 public:
  explicit Document(const Url& file) : file_(file), path_(file.filePath().value_or("")) {}

  void open() override {
    log::debugPrint("Selected file URL: " + file_.absoluteString());
    auto access = Platform::current().documentPicker.startAccess(file_);
    if (const auto* failure = std::get_if<Failure>(&access)) {
      log::debugPrint("Access to the selected file was refused: " + failure->description);
    } else {
      access_ = std::get<std::unique_ptr<FileAccess>>(std::move(access));
    }
  }

  void inspect() override {
    // Of what cannot be opened, only what is no file is the visitor's to know.
    if (!access_) {
      refusal = isUnusable() ? unusableText(path_) : "";
      return;
    }
    description = {};
    description.size = OVKFApiHelper::fileSize(file_);
    if (*description.size > sizeLimit_) {
      refusal = tooLargeText(trLater("选择的文件大小不能超过 %1 MB"), sizeLimit_);
      return;
    }
    if (isUnusable()) {
      refusal = unusableText(path_);
      return;
    }
    description.type = rawValue(FileType::File);
    description.name = fileName(path_);
    description.suffix = fileExtension(path_);
    description.mimeType = UploadManager::mimeType(description.suffix);
    upload = filePart(path_, description);
    if (isImage()) describeImage();
  }

  void uploaded(const UploadResposeModel* stored) override {
    access_.reset();
    Attachment::uploaded(stored);
  }

 private:
  // What is no file, or is there no more. A file that the visitor may not read is not his fault.
  bool isUnusable() const {
    std::error_code error;
    return !std::filesystem::is_regular_file(path_, error) && error != std::errc::permission_denied;
  }

  bool isImage() const {
    const auto& registry = Platform::current().typeRegistry;
    const auto type = registry.typeIdentifier(path_);
    if (const auto* failure = std::get_if<Failure>(&type)) {
      log::debugPrint("Error retrieving type identifier for file: " + failure->description, log::Level::warning);
      return false;
    }
    return registry.conformsToImage(std::get<std::string>(type));
  }

  void describeImage() {
    constexpr double fullQuality = 1.0;
    const auto image = Platform::current().imageCodec.jpeg(path_, fullQuality);
    if (const auto* failure = std::get_if<Failure>(&image)) {
      log::debugPrint("Error reading image: " + failure->description, log::Level::warning);
      return;
    }
    const auto& jpeg = std::get<JpegImage>(image);
    description.type = rawValue(FileType::Image);
    setPicture(description, jpeg.bytes, jpeg.size);
  }

  const Url file_;
  const std::string path_;
  const std::int64_t sizeLimit_ = OVKFApiManager::shared().fileSize;
  std::unique_ptr<FileAccess> access_;  // until the reply is there
};

class Media final : public Attachment {
 public:
  Media(PickedMedia item, double jpegQuality, bool isOfCamera)
      : item_(std::move(item)), jpegQuality_(jpegQuality), isOfCamera_(isOfCamera) {}
  Media(const Media&) = delete;
  Media& operator=(const Media&) = delete;

  ~Media() override {
    if (!isOfCamera_) return;
    if (const auto failure = Platform::current().fileManager.removeItem(item_.file)) {
      log::debugPrint("The captured file stays: " + failure->description);
    }
  }

  void inspect() override {
    const auto path = item_.file.filePath();
    if (!path) {
      refusal = unusableText(item_.file.absoluteString());
      return;
    }
    description = {};
    description.name = fileName(*path);
    item_.mediaType == MediaType::image ? inspectImage(*path) : inspectVideo(*path);
  }

 private:
  void inspectImage(const std::string& path) {
    const auto result = Platform::current().imageCodec.jpeg(path, jpegQuality_);
    if (const auto* failure = std::get_if<Failure>(&result)) return refuse(trLater("无法读取照片:%1"), *failure);
    const auto& jpeg = std::get<JpegImage>(result);
    description.type = rawValue(FileType::Image);
    setPicture(description, jpeg.bytes, jpeg.size);
    description.suffix = "jpg";
    description.size = static_cast<std::int64_t>(jpeg.bytes.size());
    description.mimeType = "image/jpeg";
  }

  void inspectVideo(const std::string& path) {
    description.size = OVKFApiHelper::fileSize(item_.file);
    if (*description.size > videoLimit_) {
      refusal = videoTooLargeText(documentLimit_);
      return;
    }
    const auto result = Platform::current().mediaProbe.probeVideo(path);
    if (const auto* failure = std::get_if<Failure>(&result)) return refuse(trLater("无法读取视频:%1"), *failure);
    const auto& facts = std::get<VideoFacts>(result);
    log::debugPrint("Video duration: " + doubleText(facts.duration) + " seconds");
    log::debugPrint("Video width: " + doubleText(facts.size.width) + " pixels");
    log::debugPrint("Video height: " + doubleText(facts.size.height) + " pixels");
    description.type = rawValue(FileType::Video);
    setPicture(description, facts.firstFrameJpeg, facts.size);
    description.duration = facts.duration;
    description.suffix = fileExtension(path);
    description.mimeType = UploadManager::mimeType(description.suffix);
    upload = filePart(path, description);
  }

  void refuse(const char* chinese, const Failure& failure) {
    log::debugPrint(failure.description, log::Level::warning);
    refusal = tr(chinese, {*description.name});
  }

  const PickedMedia item_;
  const double jpegQuality_;
  const bool isOfCamera_;
  const std::int64_t videoLimit_ = OVKFApiManager::shared().videoSize;
  const std::int64_t documentLimit_ = OVKFApiManager::shared().fileSize;
};

}  // namespace

std::string videoTooLargeText(std::int64_t documentLimit) {
  return tooLargeText(trLater("选择的视频文件大小不能超过 %1 MB"), documentLimit);
}

std::shared_ptr<Attachment> pickedDocument(const Url& file) {
  return std::make_shared<Document>(file);
}

std::shared_ptr<Attachment> pickedMedia(const PickedMedia& item, double jpegQuality, bool isOfCamera) {
  return std::make_shared<Media>(item, jpegQuality, isOfCamera);
}

}  // namespace orivex

#include "DocumentPicking.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "Attachments.h"
#include "DataAddress.h"
#include "PersonalTraces.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/ports/DocumentInteraction.h"
#include "orivex/platform/ports/DocumentPicker.h"
#include "orivex/platform/ports/ImageCodec.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/TypeRegistry.h"
#include "orivex/platform/ui/ViewController.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

constexpr double fullQuality = 1.0;

/// One picked document on its way: to a worker that looks at it, to the server, and to the page.
struct Document {
  Url file;
  std::string path;
  std::int64_t sizeLimit;
  std::unique_ptr<FileAccess> access;  // until the reply is there
  std::weak_ptr<ViewController> screen;
  ChatManager::PickedFiles completion;

  UploadFileInfoModel description;
  std::vector<Overwrite> traces;
  std::optional<std::string> refusal;  // what the visitor reads instead of an upload
};

void describeImage(const std::string& path, UploadFileInfoModel& description) {
  auto image = Platform::current().imageCodec.jpeg(path, fullQuality);
  if (const auto* failure = std::get_if<Failure>(&image)) {
    log::debugPrint("Error reading image: " + failure->description);
    return;
  }
  const auto& jpeg = std::get<JpegImage>(image);
  description.type = rawValue(FileType::Image);
  description.base64Str = jpegDataAddress(jpeg.bytes);
  description.width = jpeg.size.width;
  description.height = jpeg.size.height;
}

bool isImage(const std::string& path) {
  const auto& registry = Platform::current().typeRegistry;
  const auto type = registry.typeIdentifier(path);
  if (const auto* failure = std::get_if<Failure>(&type)) {
    log::debugPrint("Error retrieving type identifier for file: " + failure->description);
    return false;
  }
  return registry.conformsToImage(std::get<std::string>(type));
}

std::string unusableText(const std::string& path) {
  return "无效的路径:" + validUtf8(path);
}

// What is no file, or is there no more. A file that the visitor may not read is not his fault.
bool isUnusable(const std::string& path) {
  std::error_code error;
  return !std::filesystem::is_regular_file(path, error) && error != std::errc::permission_denied;
}

// Of what cannot be opened, only what is no file is the visitor's to know.
void tellIfUnusable(const std::weak_ptr<ViewController>& screen, const std::string& path) {
  auto& queue = Platform::current().mainQueue;
  queue.global([&queue, screen, path] {
    if (isUnusable(path)) queue.async([screen, path] { tellAboutAttachment(screen, unusableText(path)); });
  });
}

// On a worker thread: files may lie on slow disks, and pictures take their time.
void inspect(Document& document) {
  auto& description = document.description;
  description.size = OVKFApiHelper::fileSize(document.file);
  if (*description.size > document.sizeLimit) {
    document.refusal = documentTooLargeText(document.sizeLimit);
    return;
  }
  if (isUnusable(document.path)) {
    document.refusal = unusableText(document.path);
    return;
  }
  description.type = rawValue(FileType::File);
  description.name = fileName(document.path);
  description.suffix = fileExtension(document.path);
  description.mimeType = UploadManager::mimeType(description.suffix);
  document.traces = personalTraces(document.path);
  if (isImage(document.path)) describeImage(document.path, description);
}

void startWith(const Url& file, std::weak_ptr<ViewController> screen, ChatManager::PickedFiles completion);

void finish(Document& document, const UploadResult& result) {
  document.access.reset();
  if (const auto* failure = std::get_if<UploadFailure>(&result)) {
    return tellAboutFailedUpload(
        document.screen, failure->message,
        [file = document.file, screen = document.screen, completion = std::move(document.completion)]() mutable {
          startWith(file, screen, std::move(completion));
        });
  }
  log::debugPrint("Upload Success ");
  document.description.url = std::get<UploadResposeModel>(result).url;
  std::move(document.completion)({std::move(document.description)});
}

void upload(std::unique_ptr<Document> document) {
  if (document->refusal) return tellAboutAttachment(document->screen, *document->refusal);
  if (!stillShows(document->screen)) return log::print("The screen that asked for a document has left");
  FilePart::Path file{document->path, std::move(document->traces)};
  const auto name = *document->description.name;
  const auto mimeType = *document->description.mimeType;
  UploadManager().uploadFile(
      std::move(file), name, mimeType,
      [document = std::move(document)](const UploadResult& result) { finish(*document, result); });
}

void startWith(const Url& file, std::weak_ptr<ViewController> screen, ChatManager::PickedFiles completion) {
  log::debugPrint("Selected file URL: " + file.absoluteString());
  auto access = Platform::current().documentPicker.startAccess(file);
  if (const auto* failure = std::get_if<Failure>(&access)) {
    log::debugPrint("Access to the selected file was refused: " + failure->description);
    tellIfUnusable(screen, file.filePath().value_or(""));
    return;
  }
  auto document = std::make_unique<Document>(Document{file,
                                                      file.filePath().value_or(""),
                                                      OVKFApiManager::shared().fileSize,
                                                      std::get<std::unique_ptr<FileAccess>>(std::move(access)),
                                                      std::move(screen),
                                                      std::move(completion),
                                                      {},
                                                      {},
                                                      {}});
  auto& queue = Platform::current().mainQueue;
  queue.global([&queue, document = std::move(document)]() mutable {
    inspect(*document);
    queue.async([document = std::move(document)]() mutable { upload(std::move(document)); });
  });
}

}  // namespace

void pickDocument(const PostMessageModel& request, ViewController& screen, ChatManager::PickedFiles completion) {
  Platform::current().documentPicker.present({request.mimeTypes.value_or(std::vector<std::string>())}, *screen.view(),
                                             [screen = screen.weak_from_this(), completion = std::move(completion)](
                                                 const DocumentPickerOutcome& outcome) mutable {
                                               const auto* picked = std::get_if<PickedDocuments>(&outcome);
                                               if (!picked) {
                                                 log::debugPrint("Document picker was cancelled");
                                               } else if (!picked->files.empty()) {
                                                 startWith(picked->files.front(), screen, std::move(completion));
                                               }
                                             });
}

void openFileElsewhere(const Url& file, ViewController& screen) {
  auto& view = *screen.view();
  if (Platform::current().documentInteraction.presentOptionsMenu(file, view.bounds(), view)) return;
  tellAboutAttachment(screen.weak_from_this(), "没有可以打开此文件的应用");
}

}  // namespace orivex

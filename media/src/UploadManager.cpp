#include "orivex/media/UploadManager.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "VisitorOverlay.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/models/Codec.h"
#include "orivex/models/UploadModels.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/HttpClient.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/TypeRegistry.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex {
namespace {

constexpr const char* uploadPath = "/api/chat/outside/guest/file/upload";

// Servers of some makers begin every text with it.
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Controls and the spaces of all scripts.
bool isBlank(const std::string& text) {
  const auto points = codePoints(text);
  return std::all_of(points.begin(), points.end(), [](char32_t c) {
    return c <= 0x20 || c == 0xA0 || (c >= 0x2000 && c <= 0x200B) || c == 0x3000 || c == 0xFEFF;
  });
}

template <class Record>
std::optional<Record> decodeReply(std::string_view body) {
  if (body.starts_with(byteOrderMark)) body.remove_prefix(byteOrderMark.size());
  try {
    return decode<Record>(body);
  } catch (const DecodingError& error) {
    log::debugPrint(std::string("Failed to decode JSON: ") + error.what(), log::Level::warning);
    return std::nullopt;
  }
}

UploadResult storedFile(const std::string& body) {
  if (auto stored = decodeReply<UploadResposeModel>(body)) return *std::move(stored);
  return UploadFailure{tr("JSON解析失败")};
}

UploadResult refusal(const std::string& body) {
  const auto failure = decodeReply<FailModel>(body);
  if (!failure) return UploadFailure{tr("未知错误")};
  // A blank text would be an empty panel.
  return UploadFailure{failure->msg && !isBlank(*failure->msg) ? *failure->msg : tr("服务器错误")};
}

UploadResult interpret(const UploadReply& reply) {
  std::string cause;
  if (reply.error) {
    log::debugPrint("Upload ended by its connection: " + reply.error->description + " " + reply.error->detail,
                    log::Level::warning);
    cause = tr(reply.error->description.empty() ? trLater("上传失败") : reply.error->description.c_str());
  }
  const auto& response = reply.response;
  if (!response || response->body.empty()) return UploadFailure{tr("未知错误"), cause};
  if (reply.error) return UploadFailure{cause, cause};
  if (response->status == 200) return storedFile(response->body);
  if (response->status == 503) return UploadFailure{tr("服务不可用")};
  return refusal(response->body);
}

std::optional<FilePart> filePart(const std::optional<Url>& file, std::optional<std::string> bytes,
                                 const std::string& fileName, const std::string& mimeType) {
  if (file)
    return FilePart{UploadManager::fileField, FilePart::Path{file->filePath().value_or("")}, fileName, mimeType};
  if (bytes) return FilePart{UploadManager::fileField, FilePart::Bytes{*std::move(bytes)}, fileName, mimeType};
  return std::nullopt;
}

// Over a worker's queue, so that whoever gets the result acts before the overlay goes.
void dismissLater(std::shared_ptr<VisitorOverlay::Upload> shown, bool isStored) {
  auto& queue = Platform::current().mainQueue;
  queue.global([&queue, isStored, shown = std::move(shown)]() mutable {
    queue.async([isStored, shown = std::move(shown)] { shown->dismiss(isStored); });
  });
}

}  // namespace

void UploadManager::uploadFile(const std::optional<std::string>& address, const std::optional<Url>& file,
                               std::optional<std::string> bytes, const std::string& fileName,
                               const std::string& mimeType,
                               const std::optional<std::map<std::string, std::string>>& extraFields,
                               Once<void(UploadResult)> completion) const {
  auto target = currentTarget();
  if (address) target.address = *address;
  std::vector<FormField> fields;
  if (extraFields) {
    for (const auto& [name, value] : *extraFields) fields.push_back({name, value});
  }
  upload(target, filePart(file, std::move(bytes), fileName, mimeType), std::move(fields), validUtf8(fileName),
         std::move(completion));
}

UploadManager::Target UploadManager::currentTarget() {
  return {OVKFApiManager::shared().host + uploadPath, makeUploadHeaders()};
}

void UploadManager::upload(const Target& target, std::optional<FilePart> file, std::vector<FormField> fields,
                           std::string detail, Once<void(UploadResult)> completion) {
  auto shown = std::make_shared<VisitorOverlay::Upload>(std::move(detail));
  auto finish = [shown, completion = std::move(completion)](const UploadReply& reply) mutable {
    shown->returnToWindow();  // what is said about the upload belongs there, too
    auto result = interpret(reply);
    dismissLater(std::move(shown), std::holds_alternative<UploadResposeModel>(result));
    std::move(completion)(std::move(result));
  };
  const auto url = Url::parse(target.address);
  if (!url) {
    Platform::current().mainQueue.async([finish = std::move(finish), address = target.address]() mutable {
      finish({std::nullopt, TransportError{TransportError::other, trLater("不支持的地址"), address}});
    });
    return;
  }
  if (file) file->fileName = validUtf8(file->fileName);
  UploadRequest request{*url, target.headers, std::move(file), std::move(fields)};
  shown->setOnCancel(Platform::current().httpClient.upload(
      std::move(request), [shown](double fraction) { shown->progress(static_cast<float>(fraction)); },
      std::move(finish)));
}

void UploadManager::hideProgress(const Window& window) {
  VisitorOverlay::shared().hideUploads(window);
}

std::string UploadManager::mimeType(std::string_view forExtension) {
  return Platform::current().typeRegistry.mimeType(forExtension).value_or("application/octet-stream");
}

std::vector<HttpHeader> UploadManager::makeUploadHeaders() {
  auto& store = OVKFApiManager::shared();
  return {{"Accept", "*/*"},
          {"Content-Type", "multipart/form-data"},
          {"x-entry", store.entryId},
          {"x-device-id", store.guestId.value_or(OVKFApiHelper::deviceIdentifier())},
          {"Authorization", "Bearer " + store.appKey},
          {"User-Agent", OVKFApiHelper::userAgent()}};
}

}  // namespace orivex

#include "Attachments.h"

#include <filesystem>

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/base/Text.h"

namespace orivex {
namespace {

std::string quoted(std::int64_t limit) {
  constexpr std::int64_t mebibyte = 1048576;
  return std::to_string(limit / mebibyte) + " MB";
}

}  // namespace

std::string fileName(const std::string& path) {
  auto name = std::filesystem::path(path).filename().string();
  return validUtf8(name.empty() ? path : name);
}

std::string fileExtension(const std::string& path) {
  const auto extension = std::filesystem::path(path).extension().string();
  return extension.empty() ? "" : validUtf8(extension.substr(1));
}

void tellAboutAttachment(const std::string& message) {
  OVKFApiHelper::showMessage(message, attachmentMessageSeconds);
}

std::string documentTooLargeText(std::int64_t documentLimit) {
  return "选择的文件大小不能超过 " + quoted(documentLimit);
}

std::string videoTooLargeText(std::int64_t documentLimit) {
  return "选择的视频文件大小不能超过 " + quoted(documentLimit);
}

}  // namespace orivex

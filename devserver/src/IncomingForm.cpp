#include "IncomingForm.h"

#include <algorithm>

#include <libsoup/soup.h>

#include "GHandles.h"

namespace orivex::devserver {
namespace {

using nlohmann::json;

constexpr const char* defaultType = "application/octet-stream";
/// How much of a plain field is noted.
constexpr std::size_t mostValueBytes = 4096;

IncomingForm::Outcome failure(unsigned status, const char* text) {
  return {status, {{"msg", text}}};
}

}  // namespace

IncomingForm::IncomingForm(const std::string& boundary, FileStore& files, std::int64_t maxBytes)
    : files_(files),
      maxBytes_(maxBytes),
      parser_(boundary, {.begin = [this](const PartHeaders& headers) { beginPart(headers); },
                         .data = [this](std::string_view bytes) { takeData(bytes); },
                         .end = [this] { inFile_ = false; }}) {}

void IncomingForm::feed(std::string_view bytes) {
  if (!parser_.feed(bytes)) malformed_ = true;
}

void IncomingForm::beginPart(const PartHeaders& headers) {
  json part{{"name", headers.name}, {"size", 0}};
  if (headers.fileName)
    part["fileName"] = *headers.fileName;
  else
    part["value"] = "";
  if (!headers.contentType.empty()) part["contentType"] = headers.contentType;
  parts_.push_back(std::move(part));
  partBytes_ = 0;
  inFile_ = headers.name == "file" && !file_;
  if (!inFile_) return;
  givenType_ = headers.contentType;
  file_ = files_.create(headers.fileName.value_or(""), givenType_);
}

void IncomingForm::takeData(std::string_view bytes) {
  partBytes_ += static_cast<std::int64_t>(bytes.size());
  auto& part = parts_.back();
  part["size"] = partBytes_;
  if (const auto field = part.find("value"); field != part.end()) {
    auto& value = field->get_ref<std::string&>();
    value.append(bytes.substr(0, mostValueBytes - std::min(value.size(), mostValueBytes)));
  }
  if (!inFile_) return;
  if (partBytes_ > maxBytes_)
    tooLarge_ = true;
  else
    file_->write(bytes);
}

IncomingForm::Outcome IncomingForm::finish(const std::string& base) {
  if (tooLarge_) return failure(SOUP_STATUS_REQUEST_ENTITY_TOO_LARGE, "file too large");
  if (malformed_ || !parser_.isComplete()) return failure(SOUP_STATUS_BAD_REQUEST, "malformed multipart body");
  if (!file_) return failure(SOUP_STATUS_BAD_REQUEST, "no part named file");
  if (!file_->keep()) return failure(SOUP_STATUS_INTERNAL_SERVER_ERROR, "the file could not be stored");
  const auto& name = file_->storedName();
  const GCharPtr escaped(g_uri_escape_string(name.c_str(), nullptr, FALSE));
  return {SOUP_STATUS_OK,
          {{"url", base + "/files/" + escaped.get()},
           {"inputContentType", givenType_.empty() ? defaultType : givenType_},
           {"actualContentType", files_.typeOf(name)}}};
}

}  // namespace orivex::devserver

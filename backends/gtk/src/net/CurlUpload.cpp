#include "CurlUpload.h"

#include <utility>

#include "../Contained.h"

namespace orivex::gtk {
namespace {

// Fewer and larger pieces than libcurl's own 64 KiB; beyond this, nothing is won.
constexpr long bytesAtATime = 256L * 1024;

// A server that knows "Expect: 100-continue" answers within a round trip; with one that does not, this time is lost.
constexpr long goAheadMilliseconds = 250;

}  // namespace

CurlUpload::CurlUpload(UploadRequest request, UploadReporter reporter)
    : CurlTransfer(request.url, request.headers),
      request_(std::move(request)),
      idleWatch_(request_.idleTimeout),
      reporter_(std::move(reporter)),
      form_(curl_mime_init(handle())) {
  setRules();
}

void CurlUpload::setRules() {
  // A form has its connection to itself: HTTP/2 would gain nothing, and lose the refusal before the body is sent.
  curl_easy_setopt(handle(), CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
  curl_easy_setopt(handle(), CURLOPT_CONNECTTIMEOUT_MS, milliseconds(request_.idleTimeout));
  curl_easy_setopt(handle(), CURLOPT_EXPECT_100_TIMEOUT_MS, goAheadMilliseconds);
  curl_easy_setopt(handle(), CURLOPT_UPLOAD_BUFFERSIZE, bytesAtATime);
  curl_easy_setopt(handle(), CURLOPT_MIMEPOST, form_.get());
}

CURLcode CurlUpload::prepare() {
  if (request_.file && !addFile(std::move(*request_.file))) return CURLE_READ_ERROR;
  addFields();
  return CURLE_OK;
}

bool CurlUpload::addFile(FilePart file) {
  content_ = std::visit([](auto&& content) { return FormContent::of(std::move(content)); }, std::move(file.content));
  if (!content_->open()) {
    fail(content_->failure());
    return false;
  }
  auto* const part = curl_mime_addpart(form_.get());
  curl_mime_name(part, file.name.c_str());
  curl_mime_filename(part, file.fileName.c_str());
  curl_mime_type(part, file.mimeType.c_str());
  curl_mime_data_cb(part, content_->size(), read, seek, nullptr, this);
  return true;
}

void CurlUpload::addFields() {
  for (const auto& field : request_.fields) {
    auto* const part = curl_mime_addpart(form_.get());
    curl_mime_name(part, field.name.c_str());
    curl_mime_data(part, field.value.data(), field.value.size());
  }
}

std::optional<CurlTransfer::Clock::duration> CurlUpload::look(Clock::time_point now) {
  noteProgress();
  return idleWatch_.look(handle(), now);
}

void CurlUpload::noteProgress() {
  curl_off_t sent = 0;
  curl_off_t all = 0;
  curl_easy_getinfo(handle(), CURLINFO_SIZE_UPLOAD_T, &sent);
  curl_easy_getinfo(handle(), CURLINFO_CONTENT_LENGTH_UPLOAD_T, &all);
  if (all <= 0) return;
  reporter_.progress(sent < all ? static_cast<double>(sent) / static_cast<double>(all) : 1);
}

void CurlUpload::finish(CURLcode code) {
  noteProgress();
  UploadReply reply;
  if (const auto known = status()) reply.response = {*known, takeBody()};
  if (code != CURLE_OK) reply.error = error(code);
  reporter_.finish(std::move(reply));
}

std::size_t CurlUpload::read(char* buffer, std::size_t, std::size_t length, void* upload) noexcept {
  auto& self = *static_cast<CurlUpload*>(upload);
  if (self.position_ == self.content_->size()) return 0;
  const auto got = contained([&] { return self.content_->read(self.position_, buffer, length); });
  if (got == 0) {
    contained([&] { self.fail(self.content_->failure()); });
    return CURL_READFUNC_ABORT;
  }
  self.position_ += static_cast<std::int64_t>(got);
  return got;
}

// libcurl would begin again on a new connection when a kept one breaks before a reply. What the server took by then is
// not known, and a form is not sent twice.
int CurlUpload::seek(void* upload, curl_off_t, int) noexcept {
  contained([&] { static_cast<CurlUpload*>(upload)->fail("The connection was lost"); });
  return CURL_SEEKFUNC_CANTSEEK;
}

}  // namespace orivex::gtk

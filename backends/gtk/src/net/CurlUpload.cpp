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
    : CurlTransfer(request.url, request.headers, request.idleTimeout),
      request_(std::move(request)),
      reporter_(std::move(reporter)),
      form_(curl_mime_init(handle())) {
  setRules();
}

void CurlUpload::setRules() {
  // A form has its connection to itself: HTTP/2 would gain nothing, and lose the refusal before the body is sent.
  curl_easy_setopt(handle(), CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
  // A server may close a kept connection at any time, and a form that was lost with one is not sent again.
  curl_easy_setopt(handle(), CURLOPT_FRESH_CONNECT, 1L);
  curl_easy_setopt(handle(), CURLOPT_FORBID_REUSE, 1L);
  curl_easy_setopt(handle(), CURLOPT_CONNECTTIMEOUT_MS, milliseconds(request_.idleTimeout));
  curl_easy_setopt(handle(), CURLOPT_EXPECT_100_TIMEOUT_MS, goAheadMilliseconds);
  curl_easy_setopt(handle(), CURLOPT_UPLOAD_BUFFERSIZE, bytesAtATime);
  curl_easy_setopt(handle(), CURLOPT_MIMEPOST, form_.get());
}

CURLcode CurlUpload::prepare() {
  if (!isFilled_) {
    isFilled_ = true;
    if (request_.file && !addFile(std::move(*request_.file))) return CURLE_READ_ERROR;
    addFields();
  }
  return CurlTransfer::prepare();
}

bool CurlUpload::addFile(FilePart file) {
  auto* const part = curl_mime_addpart(form_.get());
  curl_mime_name(part, file.name.c_str());
  curl_mime_filename(part, file.fileName.c_str());
  curl_mime_type(part, file.mimeType.c_str());
  if (const auto* const bytes = std::get_if<FilePart::Bytes>(&file.content)) {
    curl_mime_data(part, bytes->value.data(), bytes->value.size());
    return true;
  }
  file_ = std::make_unique<FormFile>(std::get<FilePart::Path>(std::move(file.content)));
  if (!file_->open()) {
    fail(CURLE_READ_ERROR, file_->failure());
    return false;
  }
  curl_mime_data_cb(part, file_->size(), read, seek, nullptr, this);
  return true;
}

void CurlUpload::addFields() {
  for (const auto& field : request_.fields) {
    auto* const part = curl_mime_addpart(form_.get());
    curl_mime_name(part, field.name.c_str());
    curl_mime_data(part, field.value.data(), field.value.size());
  }
}

// Only what is sent counts: a reply that comes byte by byte would never be over.
std::int64_t CurlUpload::position() {
  curl_off_t sent = 0;
  curl_off_t all = 0;
  curl_easy_getinfo(handle(), CURLINFO_SIZE_UPLOAD_T, &sent);
  curl_easy_getinfo(handle(), CURLINFO_CONTENT_LENGTH_UPLOAD_T, &all);
  if (all > 0) reporter_.progress(sent < all ? static_cast<double>(sent) / static_cast<double>(all) : 1);
  return sent;
}

// Where the same server says, and only by the replies that ask for the same form again.
bool CurlUpload::follows(const Redirect& redirect) {
  maySendAgain_ =
      (status() == 307 || status() == 308) && redirect.isWeb && redirect.isSameHost && !redirect.isDowngrade;
  return maySendAgain_;
}

void CurlUpload::finish(CURLcode code) {
  position();
  UploadReply reply;
  if (status() >= 200) reply.response = {status(), takeBody()};
  if (code != CURLE_OK || hasFailed() || isRefusedByProxy()) reply.error = error(code);
  reporter_.finish(std::move(reply));
}

std::size_t CurlUpload::read(char* buffer, std::size_t, std::size_t length, void* upload) noexcept {
  auto& self = *static_cast<CurlUpload*>(upload);
  if (self.read_ == self.file_->size()) return 0;
  const auto got = contained([&] { return self.file_->read(self.read_, buffer, length); });
  if (got == 0) {
    contained([&] { self.fail(CURLE_READ_ERROR, self.file_->failure()); });
    return CURL_READFUNC_ABORT;
  }
  self.read_ += static_cast<std::int64_t>(got);
  return got;
}

// What the server took of a form is not known when its connection broke: it is not sent twice, unless the server said
// that it did not take it.
int CurlUpload::seek(void* upload, curl_off_t offset, int) noexcept {
  auto& self = *static_cast<CurlUpload*>(upload);
  if (!self.maySendAgain_ || offset != 0) {
    contained([&] { self.fail(CURLE_SEND_ERROR, "The connection was lost"); });
    return CURL_SEEKFUNC_CANTSEEK;
  }
  self.read_ = 0;
  return CURL_SEEKFUNC_OK;
}

}  // namespace orivex::gtk

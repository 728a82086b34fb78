#include "CurlTransfer.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

namespace orivex::gtk {
namespace {

constexpr std::size_t longestBody = std::size_t{1} << 20U;

// What browsers' loaders allow.
constexpr long mostRedirects = 20;

// libcurl takes 0 as "no time-out" and keeps the value in an int.
long timeoutMilliseconds(double seconds) {
  const double milliseconds = std::ceil(seconds * 1000);
  return milliseconds >= 1 ? static_cast<long>(std::min<double>(milliseconds, INT_MAX)) : 1;
}

// libcurl reads "Name:" as the wish to leave the header out; an empty value is written "Name;".
std::string headerLine(const HttpHeader& header) {
  return header.value.empty() ? header.name + ";" : header.name + ": " + header.value;
}

CurlList headerList(const std::vector<HttpHeader>& headers) {
  CurlList list;
  for (const auto& header : headers) {
    if (auto* const longer = curl_slist_append(list.get(), headerLine(header).c_str())) {
      static_cast<void>(list.release());
      list.reset(longer);
    }
  }
  return list;
}

}  // namespace

CurlTransfer::CurlTransfer(const UrlRequest& request, Once<void(HttpResult)> finished)
    : headers_(headerList(request.headers)), easy_(curl_easy_init()), finished_(std::move(finished)) {
  setTarget(request);
  setRules();
}

void CurlTransfer::setTarget(const UrlRequest& request) {
  curl_easy_setopt(handle(), CURLOPT_URL, request.url.absoluteString().c_str());
  curl_easy_setopt(handle(), CURLOPT_TIMEOUT_MS, timeoutMilliseconds(request.timeout));
  curl_easy_setopt(handle(), CURLOPT_HTTPHEADER, headers_.get());
}

void CurlTransfer::setRules() {
  curl_easy_setopt(handle(), CURLOPT_ERRORBUFFER, error_.data());
  curl_easy_setopt(handle(), CURLOPT_WRITEFUNCTION, receive);
  curl_easy_setopt(handle(), CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle(), CURLOPT_DEFAULT_PROTOCOL, "none");  // an address without a scheme fails, not guessed at
  curl_easy_setopt(handle(), CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(handle(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle(), CURLOPT_MAXREDIRS, mostRedirects);
  curl_easy_setopt(handle(), CURLOPT_COOKIEFILE, "");  // a redirect may count on the cookie that came with it
  curl_easy_setopt(handle(), CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
  curl_easy_setopt(handle(), CURLOPT_NOSIGNAL, 1L);
  // A name server that does not answer must hold up neither the other transfers nor the end of the client.
  curl_easy_setopt(handle(), CURLOPT_QUICK_EXIT, 1L);
}

void CurlTransfer::finish(CURLcode code) {
  std::move(finished_)(result(code));
}

HttpResult CurlTransfer::result(CURLcode code) {
  if (code == CURLE_OK) {
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    return HttpResponse{static_cast<int>(status), std::move(body_)};
  }
  return TransportError{code == CURLE_OPERATION_TIMEDOUT ? TransportError::timedOut : TransportError::other,
                        error_.front() != '\0' ? error_.data() : curl_easy_strerror(code)};
}

std::size_t CurlTransfer::receive(const char* data, std::size_t, std::size_t length, void* transfer) noexcept {
  auto& body = static_cast<CurlTransfer*>(transfer)->body_;
  body.append(data, std::min(length, longestBody - body.size()));
  return length;
}

}  // namespace orivex::gtk

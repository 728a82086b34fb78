#include "CurlRequest.h"

#include <utility>

namespace orivex::gtk {
namespace {

// What browsers' loaders allow.
constexpr long mostRedirects = 20;

}  // namespace

CurlRequest::CurlRequest(const UrlRequest& request, Once<void(HttpResult)> finished)
    : CurlTransfer(request.url, request.headers), finished_(std::move(finished)) {
  curl_easy_setopt(handle(), CURLOPT_TIMEOUT_MS, milliseconds(request.timeout));
  curl_easy_setopt(handle(), CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(handle(), CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle(), CURLOPT_MAXREDIRS, mostRedirects);
  curl_easy_setopt(handle(), CURLOPT_COOKIEFILE, "");  // a redirect may count on the cookie that came with it
}

void CurlRequest::finish(CURLcode code) {
  if (code == CURLE_OK) {
    std::move(finished_)(HttpResponse{status().value_or(0), takeBody()});
  } else {
    std::move(finished_)(error(code));
  }
}

}  // namespace orivex::gtk

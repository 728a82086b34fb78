#include "CurlRequest.h"

#include <utility>

namespace orivex::gtk {

CurlRequest::CurlRequest(const UrlRequest& request, Once<void(StatusResult)> finished)
    : CurlTransfer(request.url, request.headers, request.timeout), finished_(std::move(finished)) {
  // Finding the name, connecting and the handshake may each take their time.
  curl_easy_setopt(handle(), CURLOPT_CONNECTTIMEOUT_MS, milliseconds(3 * request.timeout));
  curl_easy_setopt(handle(), CURLOPT_COOKIEFILE, "");  // a redirect may count on the cookie that came with it
}

// Every step of connecting has a time of its own once it is done.
std::int64_t CurlRequest::position() {
  curl_off_t position = 0;
  for (const CURLINFO step :
       {CURLINFO_NAMELOOKUP_TIME_T, CURLINFO_CONNECT_TIME_T, CURLINFO_APPCONNECT_TIME_T, CURLINFO_PRETRANSFER_TIME_T}) {
    curl_off_t microseconds = 0;
    curl_easy_getinfo(handle(), step, &microseconds);
    position += microseconds;
  }
  long headerBytes = 0;
  curl_easy_getinfo(handle(), CURLINFO_HEADER_SIZE, &headerBytes);
  return position + headerBytes;
}

bool CurlRequest::follows(const Redirect& redirect) {
  if (!redirect.isWeb) {
    fail(CURLE_UNSUPPORTED_PROTOCOL, "Redirected to something other than http and https");
  } else if (redirect.isDowngrade) {
    fail(CURLE_UNSUPPORTED_PROTOCOL, "Redirected from https to http");
  }
  return !hasFailed();
}

void CurlRequest::finish(CURLcode code) {
  if (hasHead() && !hasFailed() && !isRefusedByProxy()) {
    std::move(finished_)(status());
  } else {
    std::move(finished_)(error(code));
  }
}

}  // namespace orivex::gtk

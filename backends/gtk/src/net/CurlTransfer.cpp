#include "CurlTransfer.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "../Contained.h"

namespace orivex::gtk {
namespace {

constexpr std::size_t keptBody = std::size_t{1} << 20U;

// Far beyond any page and any error: who sends more may never end.
constexpr std::size_t longestBody = std::size_t{64} << 20U;

// 1xx replies only announce the final one.
constexpr long firstFinalStatus = 200;

// What the system may hold that it has not sent yet. Without a bound, it takes megabytes at once, and progress and
// standstill cannot be told from what libcurl has handed over.
constexpr int mostUnsent = 128 * 1024;

int boundUnsent(void*, curl_socket_t socket, curlsocktype) noexcept {
  // Where this fails, nothing but the accuracy of the progress is lost.
  setsockopt(socket, IPPROTO_TCP, TCP_NOTSENT_LOWAT, &mostUnsent, sizeof mostUnsent);
  return CURL_SOCKOPT_OK;
}

// libcurl reads "Name:" as the wish to leave the header out; an empty value is written "Name;". A line break would
// begin another header, or the body.
std::string headerLine(const HttpHeader& header) {
  std::string line = header.value.empty() ? header.name + ";" : header.name + ": " + header.value;
  std::replace_if(
      line.begin(), line.end(), [](char letter) { return letter == '\r' || letter == '\n' || letter == '\0'; }, ' ');
  return line;
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

CurlTransfer::CurlTransfer(const Url& url, const std::vector<HttpHeader>& headers)
    : headers_(headerList(headers)), easy_(curl_easy_init()) {
  curl_easy_setopt(handle(), CURLOPT_URL, url.absoluteString().c_str());
  curl_easy_setopt(handle(), CURLOPT_HTTPHEADER, headers_.get());
  setRules();
}

void CurlTransfer::setRules() {
  curl_easy_setopt(handle(), CURLOPT_ERRORBUFFER, error_.data());
  curl_easy_setopt(handle(), CURLOPT_WRITEFUNCTION, receive);
  curl_easy_setopt(handle(), CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle(), CURLOPT_DEFAULT_PROTOCOL, "none");  // an address without a scheme fails, not guessed at
  curl_easy_setopt(handle(), CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
  curl_easy_setopt(handle(), CURLOPT_SOCKOPTFUNCTION, boundUnsent);
  curl_easy_setopt(handle(), CURLOPT_NOSIGNAL, 1L);
  // A name server that does not answer must hold up neither the other transfers nor the end of the client.
  curl_easy_setopt(handle(), CURLOPT_QUICK_EXIT, 1L);
}

std::optional<int> CurlTransfer::status() const {
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  if (status < firstFinalStatus) return std::nullopt;
  return static_cast<int>(status);
}

TransportError CurlTransfer::error(CURLcode code) const {
  return {code == CURLE_OPERATION_TIMEDOUT ? TransportError::timedOut : TransportError::other, description(code)};
}

std::string CurlTransfer::description(CURLcode code) const {
  if (!failure_.empty()) return failure_;
  return error_.front() != '\0' ? error_.data() : curl_easy_strerror(code);
}

// libcurl takes 0 as "no time-out" and keeps the value in an int.
long CurlTransfer::milliseconds(double seconds) {
  const double milliseconds = std::ceil(seconds * 1000);
  return milliseconds >= 1 ? static_cast<long>(std::min<double>(milliseconds, INT_MAX)) : 1;
}

std::size_t CurlTransfer::receive(const char* data, std::size_t, std::size_t length, void* transfer) noexcept {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  return contained([&]() -> std::size_t {
    self.body_.append(data, std::min(length, keptBody - self.body_.size()));
    self.received_ += length;
    if (self.received_ <= longestBody) return length;
    self.fail("The reply is too long");
    return 0;
  });
}

}  // namespace orivex::gtk

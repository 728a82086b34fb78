#include "CurlTransfer.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <string_view>
#include <utility>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "../Contained.h"
#include "TransportWords.h"

namespace orivex::gtk {
namespace {

constexpr std::size_t keptBody = std::size_t{1} << 20U;

// Far beyond any page and any error: who sends more may never end.
constexpr std::size_t longestBody = std::size_t{64} << 20U;

// What browsers' loaders allow.
constexpr int mostRedirects = 20;

constexpr int proxyAuthenticationRequired = 407;

// Some thirty years, which the clock can still add.
constexpr double longestIdle = 1e9;

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

CurlTransfer::CurlTransfer(const Url& url, const std::vector<HttpHeader>& headers, double idleSeconds)
    : address_(url.absoluteString()),
      idleSeconds_(idleSeconds),
      headers_(headerList(headers)),
      easy_(curl_easy_init()) {
  curl_easy_setopt(handle(), CURLOPT_HTTPHEADER, headers_.get());
  setRules();
}

void CurlTransfer::setRules() {
  curl_easy_setopt(handle(), CURLOPT_ERRORBUFFER, error_.data());
  curl_easy_setopt(handle(), CURLOPT_WRITEFUNCTION, receive);
  curl_easy_setopt(handle(), CURLOPT_WRITEDATA, this);
  curl_easy_setopt(handle(), CURLOPT_HEADERFUNCTION, receiveHead);
  curl_easy_setopt(handle(), CURLOPT_HEADERDATA, this);
  curl_easy_setopt(handle(), CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(handle(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle(), CURLOPT_DEFAULT_PROTOCOL, "none");  // an address without a scheme fails, not guessed at
  curl_easy_setopt(handle(), CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
  curl_easy_setopt(handle(), CURLOPT_SOCKOPTFUNCTION, boundUnsent);
  curl_easy_setopt(handle(), CURLOPT_NOSIGNAL, 1L);
  // A name server that does not answer must hold up neither the other transfers nor the end of the client.
  curl_easy_setopt(handle(), CURLOPT_QUICK_EXIT, 1L);
}

void CurlTransfer::setProxies(std::vector<std::string> proxies) {
  proxies_ = std::move(proxies);
}

CURLcode CurlTransfer::prepare() {
  lastMoved_.reset();
  curl_easy_setopt(handle(), CURLOPT_URL, address_.c_str());
  const bool isKnown = !proxies_.empty();
  curl_easy_setopt(handle(), CURLOPT_PROXY, isKnown ? proxies_.front().c_str() : nullptr);
  curl_easy_setopt(handle(), CURLOPT_NOPROXY, isKnown ? "" : nullptr);  // the exceptions were looked at
  return CURLE_OK;
}

std::optional<CurlTransfer::Clock::duration> CurlTransfer::timeLeft(Clock::time_point now) {
  const auto before = std::exchange(lastPosition_, position());
  if (!lastMoved_ || lastPosition_ != before) lastMoved_ = now;
  const std::chrono::duration<double> idle(std::clamp(idleSeconds_, 0.0, longestIdle));
  const auto left = *lastMoved_ + std::chrono::duration_cast<Clock::duration>(idle) - now;
  return left > Clock::duration::zero() ? std::optional(left) : std::nullopt;
}

int CurlTransfer::status() const {
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  return static_cast<int>(status);
}

// Where the reply says to go, as it says it; empty when it does not.
std::string CurlTransfer::location() const {
  curl_header* header = nullptr;
  return curl_easy_header(handle(), "Location", 0, CURLH_HEADER, -1, &header) == CURLHE_OK ? header->value : "";
}

bool CurlTransfer::takesNextProxy(CURLcode code) {
  if (code != CURLE_COULDNT_CONNECT && code != CURLE_COULDNT_RESOLVE_PROXY && code != CURLE_PROXY) return false;
  if (proxies_.size() < 2) return false;
  proxies_.erase(proxies_.begin());
  return true;
}

bool CurlTransfer::isRedirected(CURLcode code) {
  if (!hasHead_ || hasFailed() || (code != CURLE_OK && wantsBody())) return false;
  const auto target = location();
  if (status() < 300 || status() > 399 || target.empty()) return false;
  auto redirect = Redirect::of(address_, target);
  if (!redirect) redirect.emplace();
  if (!follows(*redirect)) return false;
  if (++redirects_ > mostRedirects) {
    fail(CURLE_TOO_MANY_REDIRECTS, "More than " + std::to_string(mostRedirects) + " redirects");
    return false;
  }
  address_ = std::move(redirect->address);
  hasHead_ = false;
  body_.clear();
  received_ = 0;
  return true;
}

bool CurlTransfer::isRefusedByProxy() const {
  long statusOfTunnel = 0;
  curl_easy_getinfo(handle(), CURLINFO_HTTP_CONNECTCODE, &statusOfTunnel);
  if (statusOfTunnel == proxyAuthenticationRequired) return true;
  const bool hasProxy = !proxies_.empty() && !proxies_.front().empty();
  return hasProxy && status() == proxyAuthenticationRequired;
}

TransportError CurlTransfer::error(CURLcode code) const {
  if (hasFailed()) return {TransportError::other, transportWords(failure_.code), failure_.detail};
  const std::string detail = error_.front() != '\0' ? error_.data() : curl_easy_strerror(code);
  if (isRefusedByProxy()) return {TransportError::other, proxyWantsCredentials, detail};
  return {code == CURLE_OPERATION_TIMEDOUT ? TransportError::timedOut : TransportError::other, transportWords(code),
          detail};
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
    self.fail(CURLE_FILESIZE_EXCEEDED, "The reply is too long");
    return 0;
  });
}

std::size_t CurlTransfer::receiveHead(const char* line, std::size_t, std::size_t length, void* transfer) noexcept {
  auto& self = *static_cast<CurlTransfer*>(transfer);
  return contained([&]() -> std::size_t {
    const bool isEmpty = std::string_view(line, length).find_first_not_of("\r\n") == std::string_view::npos;
    if (isEmpty && self.status() >= 200) self.hasHead_ = true;  // a reply of 1xx only announces the final one
    return self.hasHead_ && !self.wantsBody() ? 0 : length;
  });
}

}  // namespace orivex::gtk

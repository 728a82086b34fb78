#include "HttpClient.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include <curl/curl.h>

namespace orivex::testing {
namespace {

std::size_t takeHeader(const char* bytes, std::size_t, std::size_t size, void* reply) {
  std::string line(bytes, size);
  const auto colon = line.find(": ");
  if (colon == std::string::npos) return size;
  std::transform(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(colon), line.begin(),
                 [](unsigned char letter) { return std::tolower(letter); });
  static_cast<Reply*>(reply)->headers[line.substr(0, colon)] = line.substr(colon + 2, line.find('\r') - colon - 2);
  return size;
}

std::size_t takeBody(const char* bytes, std::size_t, std::size_t size, void* reply) {
  static_cast<Reply*>(reply)->body.append(bytes, size);
  return size;
}

}  // namespace

Reply fetch(std::uint16_t port, const Request& request, std::chrono::milliseconds patience) {
  const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle(curl_easy_init(), curl_easy_cleanup);
  CURL* const curl = handle.get();
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> lines(nullptr, curl_slist_free_all);
  const auto add = [&](const std::string& line) { lines.reset(curl_slist_append(lines.release(), line.c_str())); };
  for (const auto* line : {"Host: chat.test:8700", "Accept:", "Content-Type:"}) add(line);
  for (const auto& line : request.headers) add(line);
  Reply reply;
  curl_easy_setopt(curl, CURLOPT_URL, ("http://127.0.0.1:" + std::to_string(port)).c_str());
  curl_easy_setopt(curl, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(curl, CURLOPT_REQUEST_TARGET, request.path.c_str());
  if (request.method == "POST") {
    curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(request.body.size()));
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, request.body.data());
  }
  curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, request.method.c_str());
  curl_easy_setopt(curl, CURLOPT_HTTPHEADER, lines.get());
  curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, takeHeader);
  curl_easy_setopt(curl, CURLOPT_HEADERDATA, &reply);
  curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, takeBody);
  curl_easy_setopt(curl, CURLOPT_WRITEDATA, &reply);
  curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, static_cast<long>(patience.count()));
  const auto outcome = curl_easy_perform(curl);
  if (outcome == CURLE_OPERATION_TIMEDOUT) reply.end = End::TimedOut;
  if (outcome == CURLE_RECV_ERROR || outcome == CURLE_SEND_ERROR) reply.end = End::Reset;
  long status = 0;
  curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
  reply.status = static_cast<int>(status);
  return reply;
}

}  // namespace orivex::testing

#include "HttpClient.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orivex::testing {

RawClient::RawClient(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    throw std::runtime_error("the server does not accept connections");
  const int atOnce = 1;
  setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
}

RawClient::~RawClient() {
  close(socket_);
}

bool RawClient::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

RawClient::Received RawClient::receiveAll(std::chrono::milliseconds patience) {
  Received received{{}, End::TimedOut};
  char bytes[65536];
  pollfd waiting{socket_, POLLIN, 0};
  while (poll(&waiting, 1, static_cast<int>(patience.count())) > 0) {
    const auto count = recv(socket_, bytes, sizeof bytes, 0);
    if (count > 0) {
      received.bytes.append(bytes, static_cast<std::size_t>(count));
      continue;
    }
    received.end = count < 0 && errno == ECONNRESET ? End::Reset : End::Closed;
    break;
  }
  return received;
}

std::string toBytes(const Request& request) {
  std::string bytes =
      request.method + " " + request.path + " HTTP/1.1\r\nHost: chat.test:8700\r\nConnection: close\r\n";
  for (const auto& header : request.headers) bytes += header + "\r\n";
  if (request.method == "POST") bytes += "Content-Length: " + std::to_string(request.body.size()) + "\r\n";
  return bytes + "\r\n" + request.body;
}

Reply parseReply(const RawClient::Received& received) {
  Reply reply;
  reply.end = received.end;
  const auto& bytes = received.bytes;
  const auto headEnd = bytes.find("\r\n\r\n");
  if (!bytes.starts_with("HTTP/1.1 ") || headEnd == std::string::npos) return reply;
  reply.status = std::stoi(bytes.substr(9, 3));
  reply.body = bytes.substr(headEnd + 4);
  for (auto at = bytes.find("\r\n") + 2; at < headEnd;) {
    const auto end = bytes.find("\r\n", at);
    const auto colon = bytes.find(':', at);
    auto name = bytes.substr(at, colon - at);
    std::ranges::transform(name, name.begin(), [](unsigned char letter) { return std::tolower(letter); });
    reply.headers[name] = bytes.substr(colon + 2, end - colon - 2);
    at = end + 2;
  }
  return reply;
}

Reply fetch(std::uint16_t port, const Request& request, std::chrono::milliseconds patience) {
  RawClient client(port);
  client.send(toBytes(request));
  return parseReply(client.receiveAll(patience));
}

}  // namespace orivex::testing

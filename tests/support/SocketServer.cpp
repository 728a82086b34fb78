#include "SocketServer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orivex::gtk {

SocketConnection::~SocketConnection() {
  close(descriptor_);
}

std::string SocketConnection::readHead() {
  std::size_t end = 0;
  while ((end = buffer_.find("\r\n\r\n")) == std::string::npos) {
    if (!fill()) return {};
  }
  return read(end + 4);
}

std::string SocketConnection::read(std::size_t length) {
  while (buffer_.size() < length && fill()) {
  }
  auto bytes = buffer_.substr(0, length);
  buffer_.erase(0, length);
  return bytes;
}

std::size_t SocketConnection::skip(std::size_t length) {
  std::size_t skipped = 0;
  while (skipped < length && (!buffer_.empty() || fill())) {
    const auto part = std::min(length - skipped, buffer_.size());
    buffer_.erase(0, part);
    skipped += part;
  }
  return skipped;
}

bool SocketConnection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto sent = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void SocketConnection::holdLittle() {
  const int bytes = 64 * 1024;
  setsockopt(descriptor_, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
}

void SocketConnection::waitForEnd() {
  pollfd end{descriptor_, POLLRDHUP, 0};
  poll(&end, 1, -1);
}

void SocketConnection::endSending() {
  shutdown(descriptor_, SHUT_WR);
}

// Closing with unsent data to linger on for no time sends a reset.
void SocketConnection::resetAtEnd() {
  const linger none{1, 0};
  setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

void SocketConnection::shutDown() {
  shutdown(descriptor_, SHUT_RDWR);
}

bool SocketConnection::fill() {
  char chunk[16384];
  const auto length = recv(descriptor_, chunk, sizeof chunk, 0);
  if (length > 0) buffer_.append(chunk, static_cast<std::size_t>(length));
  return length > 0;
}

std::size_t contentLength(std::string_view head) {
  constexpr std::string_view name = "\r\nContent-Length: ";
  const auto found = head.find(name);
  return found == std::string_view::npos ? 0 : std::stoul(std::string(head.substr(found + name.size())));
}

SocketServer::SocketServer(Handler handler)
    : SocketServer(Session(
          [this, handler = std::move(handler)](SocketConnection& connection) { answerAll(connection, handler); })) {}

SocketServer::SocketServer(Session session)
    : session_(std::move(session)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  listen();
  acceptor_ = std::thread([this] { accept(); });
}

SocketServer::~SocketServer() {
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  {
    const std::lock_guard lock(mutex_);
    for (auto& connection : open_) connection.shutDown();
  }
  for (auto& thread : threads_) thread.join();
  close(listener_);
}

void SocketServer::listen() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, generic, length) != 0 || ::listen(listener_, SOMAXCONN) != 0 ||
      getsockname(listener_, generic, &length) != 0) {
    throw std::runtime_error(std::strerror(errno));
  }
  port_ = ntohs(address.sin_port);
}

void SocketServer::accept() {
  int descriptor = -1;
  while ((descriptor = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0) {
    ++connections_;
    const std::lock_guard lock(mutex_);
    const auto connection = open_.emplace(open_.end(), descriptor);
    threads_.emplace_back([this, connection] { serve(connection); });
  }
}

std::string SocketServer::url(std::string_view target) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(target);
}

std::vector<std::string> SocketServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void SocketServer::serve(std::list<SocketConnection>::iterator connection) {
  session_(*connection);
  const std::lock_guard lock(mutex_);
  open_.erase(connection);
}

void SocketServer::answerAll(SocketConnection& connection, const Handler& handler) {
  for (std::string head; !(head = connection.readHead()).empty();) {
    if (head.find("\r\nExpect: 100-continue\r\n") != std::string::npos)
      connection.send("HTTP/1.1 100 Continue\r\n\r\n");
    connection.skip(contentLength(head));
    const auto start = head.find(' ') + 1;
    const auto target = head.substr(start, head.find(' ', start) - start);
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(std::move(head));
    }
    const Answer answer = handler(target);
    if (answer.then == Then::reset) connection.resetAtEnd();
    if (!connection.send(answer.bytes) || answer.then == Then::close || answer.then == Then::reset) return;
  }
}

std::string reply(int status, std::string_view body, std::string_view headers) {
  std::string text = "HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Length: " + std::to_string(body.size());
  text.append("\r\n").append(headers).append("\r\n").append(body);
  return text;
}

}  // namespace orivex::gtk

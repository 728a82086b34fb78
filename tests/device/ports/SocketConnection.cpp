#include "SocketConnection.h"

#include <algorithm>

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

}  // namespace orivex::gtk

#include "SocketServer.h"

#include <cstring>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orivex::gtk {
namespace {

bool sendAll(int connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

// Returns at the end of a head or with nothing when the other side has gone.
std::string readHead(int connection, std::string& buffer) {
  std::size_t end;
  while ((end = buffer.find("\r\n\r\n")) == std::string::npos) {
    char chunk[4096];
    const auto length = recv(connection, chunk, sizeof chunk, 0);
    if (length <= 0) return {};
    buffer.append(chunk, static_cast<std::size_t>(length));
  }
  const std::string head = buffer.substr(0, end + 4);
  buffer.erase(0, end + 4);
  return head;
}

// Closing with unsent data to linger on for no time sends a reset.
void resetOnClose(int connection) {
  const linger none{1, 0};
  setsockopt(connection, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

}  // namespace

SocketServer::SocketServer(Handler handler)
    : handler_(std::move(handler)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  listen();
  acceptor_ = std::thread([this] {
    int connection;
    while ((connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0) {
      ++connections_;
      const std::lock_guard lock(mutex_);
      open_.push_back(connection);
      threads_.emplace_back([this, connection] { serve(connection); });
    }
  });
}

SocketServer::~SocketServer() {
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  {
    const std::lock_guard lock(mutex_);
    for (const int connection : open_) shutdown(connection, SHUT_RDWR);
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

std::string SocketServer::url(std::string_view target) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(target);
}

std::vector<std::string> SocketServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void SocketServer::serve(int connection) {
  std::string buffer;
  std::string head;
  do {
    head = readHead(connection, buffer);
  } while (!head.empty() && answer(connection, head));
  const std::lock_guard lock(mutex_);
  std::erase(open_, connection);
  close(connection);
}

// Whether to wait for another request.
bool SocketServer::answer(int connection, const std::string& head) {
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(head);
  }
  const auto start = head.find(' ') + 1;
  const Answer answer = handler_(head.substr(start, head.find(' ', start) - start));
  if (answer.then == Then::reset) resetOnClose(connection);
  if (!sendAll(connection, answer.bytes)) return false;
  return answer.then == Then::keep || answer.then == Then::silence;
}

std::string reply(int status, std::string_view body, std::string_view headers) {
  std::string text = "HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Length: " + std::to_string(body.size());
  text.append("\r\n").append(headers).append("\r\n").append(body);
  return text;
}

}  // namespace orivex::gtk

#include "SinkServer.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/SocketServer.h"

namespace orivex::bench {
namespace {

void serve(gtk::SocketConnection& connection) {
  for (std::string head; !(head = connection.readHead()).empty();) {
    if (head.find("\r\nExpect: ") != std::string::npos) connection.send("HTTP/1.1 100 Continue\r\n\r\n");
    connection.skip(gtk::contentLength(head));
    connection.send(gtk::reply(200, "{}"));
  }
}

[[noreturn]] void serveUntilKilled(int output) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const gtk::SocketServer server(gtk::SocketServer::Session{serve});
  const auto url = server.url("/");
  if (write(output, url.data(), url.size()) < 0) _exit(1);
  close(output);
  for (;;) pause();
}

}  // namespace

SinkServer::SinkServer() {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  process_ = fork();
  if (process_ == 0) serveUntilKilled(ends[1]);
  close(ends[1]);
  std::array<char, 64> text{};
  for (ssize_t length = 0; (length = read(ends[0], text.data(), text.size())) > 0;) {
    url_.append(text.data(), static_cast<std::size_t>(length));
  }
  close(ends[0]);
}

SinkServer::~SinkServer() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

}  // namespace orivex::bench

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace orivex::gtk {

/// The server's side of one connection, which it closes at its end.
class SocketConnection {
 public:
  explicit SocketConnection(int descriptor) : descriptor_(descriptor) {}
  SocketConnection(const SocketConnection&) = delete;
  SocketConnection& operator=(const SocketConnection&) = delete;
  ~SocketConnection();

  /// Reads to the end of a request's head. Nothing when the other side has gone.
  std::string readHead();

  /// Reads `length` bytes, fewer when the other side has gone.
  std::string read(std::size_t length);

  /// The same without keeping them; returns how many came.
  std::size_t skip(std::size_t length);

  /// Whether all was taken.
  bool send(std::string_view bytes);

  /// Lets the system hold only some 100 kB that were not read yet.
  void holdLittle();

  /// Returns when the other side has gone, without reading.
  void waitForEnd();

  /// Tells the other side that nothing more will come.
  void endSending();

  /// Lets the connection end with a reset.
  void resetAtEnd();

  /// Lets every wait on the connection end. Any thread.
  void shutDown();

 private:
  bool fill();

  int descriptor_;
  std::string buffer_;
};

/// The value of "Content-Length", 0 without one.
std::size_t contentLength(std::string_view head);

/// A web server in the process whose every byte a test decides. It listens on a port of 127.0.0.1 that the system
/// picks and serves each connection on a thread of its own.
class SocketServer {
 public:
  /// What becomes of the connection after the answer.
  enum class Then { keep, close, reset, silence };

  struct Answer {
    std::string bytes;
    Then then = Then::keep;
  };

  /// Gets the target of the request line, for example "/path?query", when the whole request is there. Called on the
  /// server's threads.
  using Handler = std::function<Answer(const std::string& target)>;

  /// Serves one connection, which is closed when the session returns. Called on the server's threads.
  using Session = std::function<void(SocketConnection& connection)>;

  explicit SocketServer(Handler handler);
  explicit SocketServer(Session session);
  SocketServer(const SocketServer&) = delete;
  SocketServer& operator=(const SocketServer&) = delete;
  ~SocketServer();

  std::string url(std::string_view target) const;

  /// For a handler: the head of each request as it came over the wire, in order.
  std::vector<std::string> requests() const;
  int connections() const { return connections_; }

 private:
  void listen();
  void accept();
  void serve(std::list<SocketConnection>::iterator connection);
  void answerAll(SocketConnection& connection, const Handler& handler);

  Session session_;
  int listener_;
  int port_ = 0;
  std::atomic<int> connections_ = 0;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  std::list<SocketConnection> open_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

/// A whole reply. `headers` are lines that each end in CR LF.
std::string reply(int status, std::string_view body, std::string_view headers = "");

}  // namespace orivex::gtk

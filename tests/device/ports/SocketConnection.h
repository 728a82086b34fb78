#pragma once

#include <cstddef>
#include <string>
#include <string_view>

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

}  // namespace orivex::gtk

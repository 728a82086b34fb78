#pragma once

#include <string>

#include <sys/types.h>

namespace orivex::bench {

/// A server in a process of its own that reads forms, throws them away and answers with status 200. It does as little
/// as a server can: the chat server, which parses and stores what comes, would hide what the clients cost.
class SinkServer {
 public:
  /// Forks: to be made before any thread.
  SinkServer();
  SinkServer(const SinkServer&) = delete;
  SinkServer& operator=(const SinkServer&) = delete;
  ~SinkServer();

  const std::string& url() const { return url_; }

 private:
  pid_t process_;
  std::string url_;
};

}  // namespace orivex::bench

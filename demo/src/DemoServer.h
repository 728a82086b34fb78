#pragma once

#include <functional>
#include <string>

#include "GObjects.h"

namespace orivex::demo {

/// The chat server to develop against, as a child process that ends with this object.
class DemoServer {
 public:
  /// Gets the base address of the server, or what went wrong.
  struct Handlers {
    std::function<void(const std::string& address)> started;
    std::function<void(const std::string& reason)> failed;
  };

  /// Starts the server program that lies beside this one, on a port that the system chooses. One of the handlers is
  /// called from the main loop, later and once.
  explicit DemoServer(Handlers handlers);
  DemoServer(const DemoServer&) = delete;
  DemoServer& operator=(const DemoServer&) = delete;
  ~DemoServer();

 private:
  void readLine();
  void tookLine(const std::string& line);

  Handlers handlers_;
  ObjectPtr<GCancellable> cancellable_;
  ObjectPtr<GSubprocess> process_;
  ObjectPtr<GDataInputStream> output_;
};

}  // namespace orivex::demo

#pragma once

#include <string>

#include "../base/GObjects.h"

namespace orivex::demo {

/// A chat server of the demo's own, the program beside it. It ends with this object, and with this process however that
/// ends.
class DemoServer {
 public:
  /// Starts it and waits until it listens. Throws std::runtime_error, which says why, when it does not.
  DemoServer();
  DemoServer(const DemoServer&) = delete;
  DemoServer& operator=(const DemoServer&) = delete;
  ~DemoServer();

  /// Its base address.
  const std::string& address() const { return address_; }

 private:
  ObjectPtr<GSubprocess> process_;
  std::string address_;
};

}  // namespace orivex::demo

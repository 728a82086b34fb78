#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "../base/GObjects.h"

namespace orivex::demo {

/// A chat server of the demo's own, the program beside it. It ends with this object, and with this process however that
/// ends.
class DemoServer {
 public:
  /// Starts it and waits until it listens. Throws std::runtime_error, which says why, when it does not. `unread` is
  /// told how many answers wait for a visitor who has left the chat.
  explicit DemoServer(std::function<void(std::int64_t)> unread);
  DemoServer(const DemoServer&) = delete;
  DemoServer& operator=(const DemoServer&) = delete;
  ~DemoServer();

  /// Its base address.
  const std::string& address() const { return address_; }

 private:
  void readLine();
  static void lineCame(GObject* output, GAsyncResult* result, gpointer self) noexcept;

  std::function<void(std::int64_t)> unread_;
  ObjectPtr<GCancellable> reading_;
  ObjectPtr<GSubprocess> process_;
  ObjectPtr<GDataInputStream> output_;
  std::string address_;
};

}  // namespace orivex::demo

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <variant>

#include <sys/types.h>

#include "decoding/Protocol.h"

#include "orivex/platform/base/Failure.h"

namespace orivex::gtk {

struct Decoded {
  DecodingReply facts;
  std::string bytes;
};

/// One running decoder. Any thread, one at a time.
class DecoderProcess {
 public:
  using Clock = std::chrono::steady_clock;

  /// Starts `program` and waits until it is ready.
  static std::variant<std::unique_ptr<DecoderProcess>, Failure> start(const std::string& program, bool forVideos);
  DecoderProcess(const DecoderProcess&) = delete;
  DecoderProcess& operator=(const DecoderProcess&) = delete;
  /// Ends it, whatever it does.
  ~DecoderProcess();

  /// Has the open file decoded; blocks, at most 10 s.
  std::variant<Decoded, Failure> decode(const DecodingRequest& request, int file);

  /// Whether it can take another request: false once it has died, was too slow or has answered nonsense.
  bool isUsable() const { return isUsable_; }

 private:
  DecoderProcess(pid_t process, int socket) : process_(process), socket_(socket) {}

  bool send(const DecodingRequest& request, int file);
  bool receive(char* data, std::size_t length, Clock::time_point deadline);
  std::variant<Decoded, Failure> answer(const DecodingRequest& request, Clock::time_point deadline);

  const pid_t process_;
  const int socket_;
  bool isUsable_ = true;
  bool isLate_ = false;
};

}  // namespace orivex::gtk

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <variant>

#include <gio/gio.h>

#include "../glib/GRef.h"
#include "Protocol.h"

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
  DecoderProcess(GRef<GSubprocess> process, GRef<GSocket> socket)
      : process_(std::move(process)), socket_(std::move(socket)) {}

  bool send(const DecodingRequest& request, int file);
  bool receive(char* data, std::size_t length, Clock::time_point deadline);

  const GRef<GSubprocess> process_;
  const GRef<GSocket> socket_;
  bool isUsable_ = true;
  bool isLate_ = false;
};

}  // namespace orivex::gtk

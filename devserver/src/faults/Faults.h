#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orivex::devserver {

/// What a fault can spoil: the chat page's address, the upload address, the page's web socket.
enum class FaultTarget { Page, Upload, Socket };

enum class FaultKind {
  Latency,     ///< waits before answering
  Status,      ///< answers with a status and a small body
  Silence,     ///< takes the request and never answers
  Reset,       ///< answers with a TCP reset
  Cut,         ///< closes in the middle of the reply
  BrokenJson,  ///< answers 200 with JSON that breaks off
  Redirect,    ///< answers 302 to the same address, which then works
  Drop,        ///< closes the open web sockets, once
};

/// One thing that goes wrong.
struct Fault {
  FaultTarget target = FaultTarget::Page;
  FaultKind kind = FaultKind::Status;
  /// Status: the reply's status code.
  unsigned status = 503;
  /// Status: the reply's body, exactly; absent gives an object with `msg`.
  std::optional<std::string> body;
  /// Status: the `msg` of the body; absent gives the status's reason phrase.
  std::optional<std::string> message;
  /// Latency: how long to wait.
  unsigned milliseconds = 0;
  /// Reset on an upload: how many bytes of the body arrive first; absent waits for all of it.
  std::optional<std::int64_t> afterBytes;
  /// How many requests it still spoils; absent goes on until cleared.
  std::optional<unsigned> times;
};

/// A fault that cannot be understood; what() says why in one line.
class FaultError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a fault as the command line gives it: "TARGET:KIND[=VALUE][,KEY=VALUE]...". Throws FaultError.
[[nodiscard]] Fault parseFault(std::string_view text);

/// Reads a fault as the control interface takes it. Throws FaultError.
[[nodiscard]] Fault faultFromJson(const nlohmann::json& object);

/// The form that faultFromJson reads.
[[nodiscard]] nlohmann::json toJson(const Fault& fault);

/// What happens to one request: a wait, then perhaps a fault instead of the normal answer.
struct FaultPlan {
  unsigned milliseconds = 0;
  std::optional<Fault> fault;
};

/// The faults in force.
class Faults {
 public:
  explicit Faults(std::vector<Fault> initial) : faults_(std::move(initial)) {}

  void add(Fault fault) { faults_.push_back(std::move(fault)); }
  void clear() { faults_.clear(); }
  [[nodiscard]] const std::vector<Fault>& current() const { return faults_; }

  /// What the next request to `target` meets: the first wait and the first other fault in force. Counts both down.
  [[nodiscard]] FaultPlan take(FaultTarget target);

 private:
  [[nodiscard]] std::optional<Fault> takeFirst(FaultTarget target, bool latency);

  std::vector<Fault> faults_;
};

}  // namespace orivex::devserver

#pragma once

#include <deque>
#include <memory>
#include <nlohmann/json.hpp>

#include <libsoup/soup.h>

namespace orivex::devserver {

/// The recent requests as they arrived, for tests that ask what the component sent. The control interface's own
/// requests are left out; beyond 500 the oldest goes.
class RequestLog {
 public:
  RequestLog() = default;
  RequestLog(const RequestLog&) = delete;
  RequestLog& operator=(const RequestLog&) = delete;

  /// Watches every request of the server from now on. The log must outlive the server's requests.
  void watch(SoupServer* server);

  /// An array of objects, oldest first: `id`, `method`, `path`, `query`, `headers` (lower-case names), `status` (0
  /// while unanswered) and what noteInLog() added.
  [[nodiscard]] nlohmann::json entries() const;
  void clear() { entries_.clear(); }

 private:
  void begin(SoupServerMessage* message);

  std::deque<std::shared_ptr<nlohmann::json>> entries_;
  int nextId_ = 1;
};

/// Adds what a route found out about a request to the request's entry.
void noteInLog(SoupServerMessage* message, const char* key, nlohmann::json value);

}  // namespace orivex::devserver

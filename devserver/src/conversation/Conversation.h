#pragma once

#include <cstdint>
#include <deque>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_set>
#include <vector>

namespace orivex::devserver {

/// One visitor's conversation, which outlives the page's connections: a page that comes back is told what it missed.
class Conversation {
 public:
  explicit Conversation(std::string sessionId) : sessionId_(std::move(sessionId)) {}

  [[nodiscard]] bool isEmpty() const { return history_.empty(); }

  /// The identifier of the latest message; 0 before the first.
  [[nodiscard]] std::int64_t lastId() const { return lastId_; }

  /// Keeps a visitor's message under a new message identifier and returns its frame. A message that came before, known
  /// by its client identifier, gives null: the page sends again what it does not know to have arrived.
  [[nodiscard]] nlohmann::json addVisitorMessage(nlohmann::json message);

  /// Keeps an agent's message and returns its frame.
  nlohmann::json addAgentMessage(nlohmann::json messageBody, nlohmann::json shortcuts);

  /// The frames of all messages with identifiers above `after`, oldest first.
  [[nodiscard]] std::vector<nlohmann::json> framesAfter(std::int64_t after) const;

 private:
  nlohmann::json keep(nlohmann::json message, nlohmann::json shortcuts);

  const std::string sessionId_;
  std::deque<nlohmann::json> history_;
  std::unordered_set<std::string> clientIds_;
  std::int64_t lastId_ = 0;
};

}  // namespace orivex::devserver

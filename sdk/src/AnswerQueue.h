#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "orivex/platform/base/Alive.h"

namespace orivex {

/// Writes the scripts that answer the page on worker threads, because nine photos make tens of megabytes, and evaluates
/// them in the order in which they were added. Main thread. What is still on its way when the queue goes is dropped.
class AnswerQueue {
 public:
  using Write = std::function<std::optional<std::string>()>;

  explicit AnswerQueue(std::function<void(const std::string& script)> evaluate) : evaluate_(std::move(evaluate)) {}

  /// Runs `write` on a worker thread, where it also ends, and later evaluates the script that it returns, if any.
  void add(Write write);

 private:
  struct Answer {
    bool isWritten = false;
    std::optional<std::string> script;
  };

  void evaluateWritten();

  std::function<void(const std::string& script)> evaluate_;
  std::deque<std::shared_ptr<Answer>> answers_;
  Alive alive_;
};

}  // namespace orivex

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
  using Evaluate = std::function<void(std::string script)>;

  /// Runs `write` on a worker thread, where it also ends, and later gives the script that it returns, if any, to
  /// `evaluate`.
  void add(Write write, Evaluate evaluate);

 private:
  struct Answer {
    Evaluate evaluate;
    bool isWritten = false;
    std::optional<std::string> script;
  };

  void evaluateWritten();

  std::deque<std::shared_ptr<Answer>> answers_;
  Alive alive_;
};

}  // namespace orivex

#include "AnswerQueue.h"

#include <utility>

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex {

void AnswerQueue::add(Write write, Evaluate evaluate) {
  auto answer = answers_.emplace_back(std::make_shared<Answer>());
  answer->evaluate = std::move(evaluate);
  auto& queue = Platform::current().mainQueue;
  queue.global([&queue, answer = std::move(answer), write = std::move(write),
                written = alive_.guard([this] { evaluateWritten(); })]() mutable {
    answer->script = std::exchange(write, nullptr)();
    queue.async([answer = std::move(answer), written = std::move(written)]() mutable {
      answer->isWritten = true;
      written();
    });
  });
}

void AnswerQueue::evaluateWritten() {
  while (!answers_.empty() && answers_.front()->isWritten) {
    const auto answer = std::move(answers_.front());
    answers_.pop_front();
    if (answer->script) answer->evaluate(std::move(*answer->script));
  }
}

}  // namespace orivex

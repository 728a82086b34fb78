#include "Sequence.h"

#include <array>
#include <random>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

#include "Action.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"

namespace orivex::testing {
namespace {

const std::vector<Action>& actions() {
  static const auto all = [] {
    std::vector<Action> joined;
    joined.push_back({60, "", [](World& world, Choice choice, std::string& detail) {
                        static const double times[] = {0, 0.1, 0, 1, 0.5, 0.05, 2, 0.3, 5, 11};
                        const double seconds = choice.of(times);
                        detail = doubleText(seconds) + " s pass";
                        world.pass(seconds);
                        return true;
                      }});
    for (auto& some : {hostActions(), pageActions(), visitorActions()}) {
      joined.insert(joined.end(), some.begin(), some.end());
    }
    return joined;
  }();
  return all;
}

void tell(int pipe, const std::string& text) {
  if (write(pipe, text.data(), text.size()) < 0) _exit(1);
}

void playHere(const Sequence& sequence, bool story, int pipe) {
  log::setSink([](std::string_view) {});
  World world;
  for (const auto& [action, number] : sequence) {
    const auto& step = actions()[action];
    std::string detail;
    const bool happened = step.act(world, Choice(number), detail);
    world.watch();
    if (story && happened)
      tell(pipe, "  " + step.name + (step.name.empty() || detail.empty() ? "" : " ") + detail + "\n");
    if (!world.broken.empty()) break;
  }
  if (world.broken.empty()) world.checkEnd();
  tell(pipe, world.broken);
}

}  // namespace

Sequence randomSequence(unsigned long seed, std::size_t length) {
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  std::vector<unsigned> weights;
  for (const auto& action : actions()) weights.push_back(action.weight);
  std::discrete_distribution<std::size_t> draw(weights.begin(), weights.end());
  Sequence sequence;
  while (sequence.size() < length) sequence.push_back({draw(random), static_cast<unsigned>(random())});
  return sequence;
}

std::string play(const Sequence& sequence, bool story) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return "no pipe";
  const auto child = fork();
  if (child == 0) {
    playHere(sequence, story, ends[1]);
    _exit(0);
  }
  close(ends[1]);
  std::string said;
  std::array<char, 4096> part{};
  for (ssize_t size = 0; (size = read(ends[0], part.data(), part.size())) > 0;) {
    said.append(part.data(), static_cast<std::size_t>(size));
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) said += "the process ended with status " + std::to_string(status);
  return said;
}

Sequence shrunk(Sequence sequence) {
  const auto rule = play(sequence);
  const auto take = [&](const Sequence& shorter) {
    if (play(shorter) != rule) return false;
    sequence = shorter;
    return true;
  };
  for (auto size = sequence.size(); size > 0; size = size > 1 ? (size + 1) / 2 : 0) {
    bool again = true;
    while (std::exchange(again, false)) {
      for (std::size_t at = 0; at + size <= sequence.size();) {
        auto shorter = sequence;
        const auto first = shorter.begin() + static_cast<std::ptrdiff_t>(at);
        shorter.erase(first, first + static_cast<std::ptrdiff_t>(size));
        if (take(shorter)) {
          again = size == 1;
        } else {
          at += size;
        }
      }
    }
  }
  for (std::size_t at = 0; at < sequence.size(); ++at) {
    auto plainer = sequence;
    plainer[at].number = 0;
    take(plainer);
  }
  return sequence;
}

}  // namespace orivex::testing

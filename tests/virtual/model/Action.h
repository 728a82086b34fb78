#pragma once

#include <functional>
#include <string>
#include <vector>

#include "World.h"

namespace orivex::testing {

/// The random number of a step, from which its action draws one choice after the other.
class Choice {
 public:
  explicit Choice(unsigned number) : number_(number) {}

  /// From 0 on; 0 for the number 0, which is the plainest step.
  unsigned below(unsigned count) {
    const auto drawn = number_ % count;
    number_ /= count;
    return drawn;
  }

  template <class Value, std::size_t size>
  const Value& of(const Value (&values)[size]) {
    return values[below(size)];
  }

 private:
  unsigned number_;
};

/// Something that can happen, as often as its weight says among the others. It says what it did; nothing where it could
/// do nothing.
struct Action {
  unsigned weight;
  std::function<std::string(World&, Choice)> act;
};

std::vector<Action> hostActions();
std::vector<Action> pageActions();
std::vector<Action> visitorActions();
std::vector<Action> networkActions();

}  // namespace orivex::testing

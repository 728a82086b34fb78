#pragma once

#include <functional>
#include <string>
#include <vector>

#include "World.h"

namespace orivex::testing {

/// The random number of a step, from which its action draws one choice after the other; 0 makes the plainest step.
class Choice {
 public:
  explicit Choice(unsigned number) : number_(number) {}

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

/// Something that can happen, as often as its weight says among the others.
struct Action {
  unsigned weight;
  std::string name;
  /// Does it and says more about it; false where it cannot happen now.
  std::function<bool(World&, Choice, std::string& detail)> act;
};

std::vector<Action> hostActions();
std::vector<Action> pageActions();
std::vector<Action> visitorActions();

}  // namespace orivex::testing

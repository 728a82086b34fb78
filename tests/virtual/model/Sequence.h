#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orivex::testing {

/// One thing that happens: which of all actions, and the number from which it draws its choices.
struct Step {
  std::size_t action = 0;
  unsigned number = 0;
};
using Sequence = std::vector<Step>;

Sequence randomSequence(unsigned long seed, std::size_t length);

/// The rule that `sequence` breaks, played on a device of its own in a process of its own, since it may also end that;
/// empty when all hold. With `story`, what happened comes before it, a line for each step that did something.
std::string play(const Sequence& sequence, bool story = false);

/// A sequence that breaks the same rule, from which nothing can be left out.
Sequence shrunk(Sequence sequence);

}  // namespace orivex::testing

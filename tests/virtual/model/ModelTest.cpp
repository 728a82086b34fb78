#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "Sequence.h"

namespace orivex::testing {
namespace {

constexpr std::size_t stepsInAll = 100'000;
constexpr std::size_t stepsOfOne = 60;

unsigned long setting(const char* name, unsigned long usual) {
  const char* const text = std::getenv(name);
  return text ? std::stoul(text) : usual;
}

// The same each time, unless ORIVEX_MODEL_SEED names another first seed and ORIVEX_MODEL_STEPS more or fewer steps.
TEST(Model, WhateverHappensTheRulesHold) {
  auto seed = setting("ORIVEX_MODEL_SEED", 1);
  const auto steps = setting("ORIVEX_MODEL_STEPS", stepsInAll);
  for (std::size_t played = 0; played < steps; played += stepsOfOne, ++seed) {
    const auto sequence = randomSequence(seed, stepsOfOne);
    if (play(sequence).empty()) continue;
    FAIL() << "ORIVEX_MODEL_SEED=" << seed << " ORIVEX_MODEL_STEPS=1 finds, shortened:\n"
           << play(shrunk(sequence), true);
  }
}

}  // namespace
}  // namespace orivex::testing

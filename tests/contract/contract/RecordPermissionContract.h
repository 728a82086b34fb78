#pragma once

#include <atomic>

#include <gtest/gtest.h>

#include "contract/Fixture.h"

#include "orivex/platform/ports/RecordPermission.h"

namespace orivex::contract {

/// A visitor whose answer to the question for the microphone is known.
template <class Fixture>
concept PermissionFixture = DeviceFixture<Fixture> && requires(Fixture fixture, bool granted) {
  fixture.rememberPermission(granted);
};

template <PermissionFixture Fixture>
class RecordPermissionContract : public ::testing::Test {
 protected:
  Fixture fixture_;
};
TYPED_TEST_SUITE_P(RecordPermissionContract);

TYPED_TEST_P(RecordPermissionContract, AKnownAnswerComesOnceAndNotInsideTheCall) {
  for (const bool granted : {true, false, true}) {
    this->fixture_.rememberPermission(granted);
    // The answer may come on any thread.
    std::atomic<int> answers = 0;
    std::atomic<bool> answer = !granted;
    this->fixture_.platform().recordPermission.request("Shop", [&](bool given) {
      answer = given;
      ++answers;
    });
    EXPECT_EQ(answers, 0);
    EXPECT_TRUE(this->fixture_.wait([&] { return answers > 0; }, patience));
    this->fixture_.wait([] { return false; }, moment);
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, granted);
  }
}

REGISTER_TYPED_TEST_SUITE_P(RecordPermissionContract, AKnownAnswerComesOnceAndNotInsideTheCall);

}  // namespace orivex::contract

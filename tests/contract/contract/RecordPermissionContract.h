#pragma once

#include <atomic>
#include <memory>

#include "contract/Fixture.h"

#include "orivex/platform/ports/RecordPermission.h"
#include "orivex/platform/ui/View.h"

namespace orivex::contract {

/// A visitor whose answer to the question for the microphone is known.
template <class Fixture>
concept PermissionFixture = DeviceFixture<Fixture> && requires(Fixture fixture, bool granted) {
  fixture.rememberPermission(granted);
};

template <PermissionFixture Fixture>
class RecordPermissionContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(RecordPermissionContract);

TYPED_TEST_P(RecordPermissionContract, AKnownAnswerComesOnceAndNotInsideTheCall) {
  const auto view = std::make_shared<View>();
  for (const bool granted : {true, false, true}) {
    this->fixture_.rememberPermission(granted);
    // The answer may come on any thread.
    std::atomic<int> answers = 0;
    std::atomic<bool> answer = !granted;
    this->fixture_.platform().recordPermission.request("Shop", *view, [&](bool given) {
      answer = given;
      ++answers;
    });
    EXPECT_EQ(answers, 0);
    EXPECT_TRUE(this->wait([&] { return answers > 0; }));
    this->pass(moment);
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer, granted);
  }
}

REGISTER_TYPED_TEST_SUITE_P(RecordPermissionContract, AKnownAnswerComesOnceAndNotInsideTheCall);

}  // namespace orivex::contract

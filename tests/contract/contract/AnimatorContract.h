#pragma once

#include <algorithm>

#include "contract/Fixture.h"

#include "orivex/platform/ports/Animator.h"

namespace orivex::contract {

template <DeviceFixture Fixture>
class AnimatorContract : public Suite<Fixture> {
 protected:
  struct Course {
    std::vector<double> steps;
    int completions = 0;
    bool steppedAfterCompletion = false;
  };

  void start(double seconds, Course& course) {
    this->fixture_.platform().animator.animate(
        seconds,
        [&course](double progress) {
          course.steps.push_back(progress);
          course.steppedAfterCompletion |= course.completions > 0;
        },
        [&course] { ++course.completions; });
    EXPECT_TRUE(course.steps.empty()) << "stepped inside the call";
    EXPECT_EQ(course.completions, 0) << "completed inside the call";
  }
};
TYPED_TEST_SUITE_P(AnimatorContract);

TYPED_TEST_P(AnimatorContract, RisesToExactlyOneAndCompletesOnce) {
  for (const double seconds : {0.2, 0.013, 0.0}) {
    typename TestFixture::Course course;
    this->start(seconds, course);
    EXPECT_TRUE(this->wait([&] { return course.completions > 0; })) << seconds;
    this->pass(moment);
    EXPECT_EQ(course.completions, 1) << seconds;
    EXPECT_FALSE(course.steppedAfterCompletion) << seconds;
    ASSERT_FALSE(course.steps.empty()) << seconds;
    EXPECT_EQ(course.steps.back(), 1.0) << seconds;
    EXPECT_EQ(std::count(course.steps.begin(), course.steps.end(), 1.0), 1) << seconds;
    EXPECT_TRUE(std::is_sorted(course.steps.begin(), course.steps.end())) << seconds;
    EXPECT_GE(course.steps.front(), 0.0) << seconds;
  }
}

TYPED_TEST_P(AnimatorContract, TwoAtOnceDoNotDisturbEachOther) {
  typename TestFixture::Course one;
  typename TestFixture::Course other;
  this->start(0.1, one);
  this->start(0.05, other);
  EXPECT_TRUE(this->wait([&] { return one.completions > 0 && other.completions > 0; }));
  EXPECT_EQ(one.steps.back(), 1.0);
  EXPECT_EQ(other.steps.back(), 1.0);
}

TYPED_TEST_P(AnimatorContract, NeedsNoCompletion) {
  double last = 0;
  this->fixture_.platform().animator.animate(
      0.05, [&](double progress) { last = progress; }, nullptr);
  EXPECT_TRUE(this->wait([&] { return last == 1.0; }));
}

REGISTER_TYPED_TEST_SUITE_P(AnimatorContract, RisesToExactlyOneAndCompletesOnce, TwoAtOnceDoNotDisturbEachOther,
                            NeedsNoCompletion);

}  // namespace orivex::contract

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/base/Once.h"

namespace orivex {
namespace {

static_assert(!std::is_copy_constructible_v<Once<void()>>);
static_assert(!std::is_invocable_v<Once<void()>&>, "only a completion that is given up can be called");
static_assert(!std::is_constructible_v<Once<void()>, int (*)(int)>);

TEST(Once, RunsOnceAndLetsGoOfWhatItHeld) {
  const auto held = std::make_shared<int>(0);
  Once<void(int)> once = [held](int by) { *held += by; };
  EXPECT_EQ(held.use_count(), 2);
  std::move(once)(3);
  EXPECT_FALSE(once);  // NOLINT(bugprone-use-after-move): what is left is the point
  EXPECT_EQ(held.use_count(), 1);
  std::move(once)(3);
  EXPECT_EQ(*held, 3);
}

TEST(Once, AnEmptyFunctionIsAnAbsentCompletion) {
  const std::function<void()> absent;
  Once<void()> once = absent;
  EXPECT_FALSE(once);
  std::move(once)();
  void (*const none)() = nullptr;
  EXPECT_FALSE(Once<void()>(none));
  EXPECT_FALSE(Once<void()>(nullptr));
}

TEST(Alive, AGuardedCallDoesNothingOnceItsOwnerIsGone) {
  auto owner = std::make_optional<Alive>();
  int calls = 0;
  auto guarded = owner->guard([&calls](int by) { calls += by; });
  guarded(2);
  owner.reset();
  guarded(2);
  EXPECT_EQ(calls, 2);
}

TEST(Subscription, EndsWithTheObjectAndWhenAnotherTakesItsPlace) {
  std::string ended;
  {
    Subscription one([&] { ended += '1'; });
    Subscription moved = std::move(one);
    EXPECT_FALSE(one);  // NOLINT(bugprone-use-after-move): what is left is the point
    EXPECT_EQ(ended, "");
    moved = Subscription([&] { ended += '2'; });
    EXPECT_EQ(ended, "1");
    moved = {};
    EXPECT_EQ(ended, "12");
    moved = Subscription([&] { ended += '3'; });
  }
  EXPECT_EQ(ended, "123");
}

class ObserversTest : public ::testing::Test {
 protected:
  Subscription note(char letter) {
    return list_->add([this, letter](int) { heard_ += letter; });
  }

  std::optional<Observers<int>> list_ = std::make_optional<Observers<int>>();
  std::string heard_;
};

TEST_F(ObserversTest, MayEndThemselvesOrOneThatIsStillToHear) {
  Subscription own;
  Subscription later;
  const auto held = std::make_shared<std::string>("own ");
  own = list_->add([&, held](int) {
    own = {};
    later = {};
    heard_ += *held;
  });
  later = note('x');
  const auto last = note('z');
  list_->notify(1);
  list_->notify(1);
  EXPECT_EQ(heard_, "own zz");
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(ObserversTest, OneAddedWhileTheyHearWaitsAndTheListMayEnd) {
  std::vector<Subscription> added;
  auto adding = list_->add([&](int) { added.push_back(note('n')); });
  list_->notify(1);
  EXPECT_EQ(heard_, "");
  adding = {};
  list_->notify(1);
  EXPECT_EQ(std::exchange(heard_, {}), "n");
  added.clear();
  const auto ending = list_->add([&](int) { list_.reset(); });
  const auto never = note('x');
  list_->notify(1);
  EXPECT_EQ(heard_, "");
}

}  // namespace
}  // namespace orivex

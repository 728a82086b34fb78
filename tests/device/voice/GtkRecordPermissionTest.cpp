#include <algorithm>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "av/GtkRecordPermission.h"
#include "support/LogLines.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/Visitor.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 10;

class GtkRecordPermissionTest : public ::testing::Test {
 protected:
  GtkRecordPermission permission(const std::string& application) {
    const auto& ports = Platform::current();
    return {ports.mainQueue, dynamic_cast<GtkApplicationPort&>(ports.application),
            ConsentFile(folder_.path() / "state" / "permissions.ini", application)};
  }

  void ask(GtkRecordPermission& permission) {
    permission.request("小店", *view_, [this](bool granted) { answers_.push_back(granted); });
  }

  void choose(const char* label) {
    ASSERT_TRUE(pressInDialog(label)) << label;
    EXPECT_TRUE(wait([] { return openDialog() == nullptr; }, patience));
  }

  std::vector<bool> answers(std::size_t count) {
    EXPECT_TRUE(wait([&] { return answers_.size() >= count; }, patience));
    pass(0.05);
    return answers_;
  }

  TemporaryFolder folder_;
  VisitorWindow visitor_;
  const std::shared_ptr<View> view_ = visitor_.view();
  std::vector<bool> answers_;
};

using Answers = std::vector<bool>;

TEST_F(GtkRecordPermissionTest, AsksOnceAndRemembersForEachApplicationByItself) {
  auto shop = permission("org.example.Shop");
  ask(shop);
  ASSERT_NE(openDialog(), nullptr);
  EXPECT_EQ(headingOf(openDialog()), "“小店”想使用麦克风");
  ask(shop);
  pass(0.05);
  EXPECT_TRUE(answers_.empty());
  choose("允许");
  EXPECT_EQ(answers(2), (Answers{true, true})) << "both questions have the one answer";
  ask(shop);
  EXPECT_EQ(openDialog(), nullptr);
  EXPECT_EQ(answers_.size(), 2U) << "answered inside the call";
  EXPECT_EQ(answers(3).back(), true);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(folder_.path() / "state").permissions(), perms::owner_all);
  EXPECT_EQ(std::filesystem::status(folder_.path() / "state/permissions.ini").permissions(),
            perms::owner_read | perms::owner_write);

  auto next = permission("org.example.Shop");
  ask(next);
  EXPECT_EQ(answers(4).back(), true);
  auto other = permission("org.example.[Other]\n");
  ask(other);
  choose("不允许");
  EXPECT_EQ(answers(5).back(), false);
  ask(next);
  EXPECT_EQ(answers(6).back(), true);
}

TEST_F(GtkRecordPermissionTest, AnswersNoAtOnceAfterARefusalAndOffersAWayBack) {
  auto shop = permission("shop");
  ask(shop);
  choose("不允许");
  EXPECT_EQ(answers(1), Answers{false});
  ask(shop);
  EXPECT_EQ(answers(2), (Answers{false, false})) << "the page waits for the dialog";
  ASSERT_NE(openDialog(), nullptr);
  EXPECT_EQ(headingOf(openDialog()), "“小店”不能使用麦克风");
  choose("关闭");
  ask(shop);
  EXPECT_EQ(answers(3).back(), false);
  choose("允许");
  EXPECT_EQ(answers(3).size(), 3U) << "answered a second time";
  ask(shop);
  EXPECT_EQ(answers(4).back(), true);
}

TEST_F(GtkRecordPermissionTest, TakesADialogThatGoesWithoutAnAnswerForARefusalThatIsNotRemembered) {
  auto shop = permission("shop");
  ask(shop);
  closeDialog();
  EXPECT_EQ(answers(1), Answers{false});
  ask(shop);
  EXPECT_NE(openDialog(), nullptr);
  visitor_.destroy();
  EXPECT_EQ(openDialog(), nullptr);
  ask(shop);
  EXPECT_EQ(answers(2), (Answers{false, false})) << "only the last one: there is no window to ask in";
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "state"));
}

// Somebody who holds the talk button down with a key must not have answered with that key.
TEST_F(GtkRecordPermissionTest, TakesNoKeyForAnAnswerThatWasDownBeforeTheQuestion) {
  auto shop = permission("shop");
  gtk_widget_grab_focus(visitor_.entry());
  hands({"key-down", "space"});
  ASSERT_TRUE(wait([&] { return gtk_editable_get_text(GTK_EDITABLE(visitor_.entry()))[0] == ' '; }, patience));
  ask(shop);
  auto* const window = GTK_WINDOW(gtk_widget_get_root(openDialog()));
  gtk_window_set_title(window, "orivex-question");
  focusWindow(window, "orivex-question");
  EXPECT_EQ(gtk_window_get_focus(window), nullptr) << "an answer is chosen beforehand";
  EXPECT_EQ(gtk_window_get_default_widget(window), nullptr);
  for (int tabs = 0; tabs < 3 && !GTK_IS_BUTTON(gtk_window_get_focus(window)); ++tabs) {
    gtk_widget_child_focus(openDialog(), GTK_DIR_TAB_FORWARD);
  }
  pass(1.5);  // the key repeats meanwhile
  EXPECT_TRUE(answers_.empty());
  ASSERT_NE(openDialog(), nullptr);
  hands({"key-up", "space"});
  hands({"key", "space"});
  EXPECT_EQ(answers(1), Answers{false}) << "a key that goes down now does not answer";
}

TEST_F(GtkRecordPermissionTest, EndsWithTheScreenThatAskedAndRemembersNothing) {
  auto shop = permission("shop");
  ask(shop);
  ASSERT_NE(openDialog(), nullptr);
  view_->setShowing(false);
  EXPECT_EQ(openDialog(), nullptr);
  pass(0.1);
  EXPECT_TRUE(answers_.empty());
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "state"));
}

TEST_F(GtkRecordPermissionTest, AsksAgainWhenTheAnswerCannotBeKeptOrRead) {
  const LogLines log;
  folder_.write("state", "in the way");
  auto shop = permission("shop");
  ask(shop);
  choose("允许");
  EXPECT_EQ(answers(1), Answers{true});
  const auto lines = log.get();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.starts_with("Cannot remember the answer"); }),
            1);
  std::filesystem::remove(folder_.path() / "state");
  folder_.write("state/permissions.ini", "[shop]\nmicrophone=perhaps\n");
  ask(shop);
  choose("允许");
  EXPECT_EQ(answers(2).back(), true);
  ask(shop);
  EXPECT_EQ(answers(3).back(), true);
  EXPECT_EQ(openDialog(), nullptr);
}

}  // namespace
}  // namespace orivex::gtk

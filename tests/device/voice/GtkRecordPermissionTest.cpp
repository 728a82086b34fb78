#include <algorithm>
#include <filesystem>
#include <string_view>
#include <vector>

#include <adwaita.h>
#include <gtest/gtest.h>

#include "../GtkFixture.h"
#include "GlibMainQueue.h"
#include "SharedLog.h"
#include "TemporaryFolder.h"
#include "audio/GtkRecordPermission.h"
#include "ui/GtkApplicationPort.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"

namespace orivex::gtk {
namespace {

constexpr double patience = 10;

GtkWidget* buttonIn(GtkWidget* parent, std::string_view label) {
  for (GtkWidget* child = gtk_widget_get_first_child(parent); child; child = gtk_widget_get_next_sibling(child)) {
    const char* const text = GTK_IS_BUTTON(child) ? gtk_button_get_label(GTK_BUTTON(child)) : nullptr;
    if (text && text == label) return child;
    if (GtkWidget* const found = buttonIn(child, label)) return found;
  }
  return nullptr;
}

class GtkRecordPermissionTest : public ::testing::Test {
 protected:
  GtkRecordPermissionTest() {
    adw_init();
    install();
    window_ = GTK_WINDOW(gtk_window_new());
    gtk_window_set_child(window_, gtk_label_new("Shop"));
    attach(window_);
    gtk_window_present(window_);
  }
  ~GtkRecordPermissionTest() override {
    if (window_) gtk_window_destroy(window_);
  }

  GtkRecordPermission permission(const std::string& application) {
    const auto& ports = Platform::current();
    return {ports.mainQueue, dynamic_cast<GtkApplicationPort&>(ports.application),
            ConsentFile(folder_.path() / "state" / "permissions.ini", application), false};
  }

  void ask(GtkRecordPermission& permission) {
    permission.request("小店", [this](bool granted) { answers_.push_back(granted); });
  }

  static AdwMessageDialog* dialog() {
    AdwMessageDialog* found = nullptr;
    GList* const windows = gtk_window_list_toplevels();
    for (GList* node = windows; node; node = node->next) {
      if (ADW_IS_MESSAGE_DIALOG(node->data)) found = ADW_MESSAGE_DIALOG(node->data);
    }
    g_list_free(windows);
    return found;
  }

  // Presses the button, as a visitor does.
  void choose(const char* label) {
    ASSERT_NE(dialog(), nullptr);
    GtkWidget* const button = buttonIn(GTK_WIDGET(dialog()), label);
    ASSERT_NE(button, nullptr) << label;
    g_signal_emit_by_name(button, "clicked");
    EXPECT_TRUE(wait([] { return dialog() == nullptr; }, patience));
  }

  std::vector<bool> answers(std::size_t count) {
    EXPECT_TRUE(wait([&] { return answers_.size() >= count; }, patience));
    pass(0.05);
    return answers_;
  }

  TemporaryFolder folder_;
  GtkWindow* window_ = nullptr;
  std::vector<bool> answers_;
};

using Answers = std::vector<bool>;

TEST_F(GtkRecordPermissionTest, AsksOnceAndRemembersForEachApplicationByItself) {
  auto shop = permission("org.example.Shop");
  ask(shop);
  ASSERT_NE(dialog(), nullptr);
  EXPECT_STREQ(adw_message_dialog_get_heading(dialog()), "“小店”想使用麦克风");
  ask(shop);
  pass(0.05);
  EXPECT_TRUE(answers_.empty());
  choose("允许");
  EXPECT_EQ(answers(2), (Answers{true, true})) << "both questions have the one answer";
  ask(shop);
  EXPECT_EQ(dialog(), nullptr);
  EXPECT_EQ(answers_.size(), 2U) << "answered inside the call";
  EXPECT_EQ(answers(3).back(), true);

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
  ASSERT_NE(dialog(), nullptr);
  EXPECT_STREQ(adw_message_dialog_get_heading(dialog()), "“小店”不能使用麦克风");
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
  gtk_window_close(GTK_WINDOW(dialog()));
  EXPECT_EQ(answers(1), Answers{false});
  ask(shop);
  EXPECT_NE(dialog(), nullptr);
  gtk_window_destroy(window_);
  window_ = nullptr;
  EXPECT_EQ(answers(2), (Answers{false, false}));
  EXPECT_EQ(dialog(), nullptr);
  ask(shop);
  EXPECT_EQ(answers(3).back(), false) << "there is no window to ask in";
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "state"));
}

TEST_F(GtkRecordPermissionTest, AsksAgainWhenTheAnswerCannotBeKeptOrRead) {
  const SharedLog log;
  folder_.write("state", "in the way");
  auto shop = permission("shop");
  ask(shop);
  choose("允许");
  EXPECT_EQ(answers(1), Answers{true});
  const auto lines = log.lines();
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
  EXPECT_EQ(dialog(), nullptr);
}

}  // namespace
}  // namespace orivex::gtk

#include "support/Processes.h"
#include "support/ScreenFixture.h"

namespace orivex::gtk {
namespace {

class Leak : public ScreenFixture {};

TEST_F(Leak, NoPageProcessOutlivesItsScreen) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  std::vector<std::weak_ptr<OVKFApi>> screens;
  for (int round = 0; round < 20; ++round) {
    recorder->events.clear();
    const auto chat = openChat(server.url(""));
    screens.push_back(chat);
    EXPECT_GE(pageProcesses(), 1U) << "the count sees a page that lives";
    evaluate(*chat, "webkit.messageHandlers.goBack.postMessage({}); 0");
    ASSERT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
  }
  // A finished load holds its screen until the reveal, four seconds later.
  EXPECT_TRUE(
      wait([&] { return std::all_of(screens.begin(), screens.end(), [](auto& it) { return it.expired(); }); }, 15));
  // Looked at now and then only: counting takes so long that it would starve what ends the processes.
  auto left = pageProcesses();
  for (int looks = 0; left > 0 && looks < 30; ++looks) {
    pass(0.5);
    left = pageProcesses();
  }
  EXPECT_EQ(left, 0);
}

}  // namespace
}  // namespace orivex::gtk

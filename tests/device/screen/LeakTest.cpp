#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include <unistd.h>

#include "ScreenFixture.h"

namespace orivex::gtk {
namespace {

struct Process {
  int id = 0;
  int parent = 0;
  std::string name;
};

std::vector<Process> allProcesses() {
  std::vector<Process> processes;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    Process process;
    std::string state;
    if (file >> process.id >> process.name >> state >> process.parent && state != "Z") processes.push_back(process);
  }
  return processes;
}

// Processes of pages below this one, through the sandbox's own in between.
int pageProcesses() {
  const auto processes = allProcesses();
  std::set<int> ours{getpid()};
  int pages = 0;
  for (bool grew = true; grew;) {
    grew = false;
    for (const auto& process : processes) {
      if (ours.count(process.parent) == 0 || !ours.insert(process.id).second) continue;
      grew = true;
      if (process.name.find("WebKitWebProces") != std::string::npos) ++pages;
    }
  }
  return pages;
}

class Leak : public ScreenFixture {};

TEST_F(Leak, NoPageProcessOutlivesItsScreen) {
  const SocketServer server(servePage("<script>" + raise("ready") + "</script>"));
  std::vector<std::weak_ptr<OVKFApi>> screens;
  for (int round = 0; round < 5; ++round) {
    recorder->events.clear();
    const auto chat = openChat(server.url(""));
    screens.push_back(chat);
    EXPECT_GE(pageProcesses(), 1) << "the count sees a page that lives";
    evaluate(*chat, "webkit.messageHandlers.goBack.postMessage({}); 0");
    ASSERT_TRUE(wait([&] { return !chat->isViewInWindow(); }, 5));
  }
  // A finished load holds its screen until the reveal, four seconds later.
  EXPECT_TRUE(
      wait([&] { return std::all_of(screens.begin(), screens.end(), [](auto& it) { return it.expired(); }); }, 15));
  // Looked at now and then only: counting takes so long that it would starve what ends the processes.
  int left = pageProcesses();
  for (int looks = 0; left > 0 && looks < 30; ++looks) {
    pass(0.5);
    left = pageProcesses();
  }
  EXPECT_EQ(left, 0);
}

}  // namespace
}  // namespace orivex::gtk

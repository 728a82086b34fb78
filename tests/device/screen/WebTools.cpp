#include "WebTools.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "GtkFixture.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

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

}  // namespace

std::string evaluateIn(WebKitWebView* view, const std::string& script) {
  struct Answer {
    bool done = false;
    std::string text;
  } answer;
  webkit_web_view_evaluate_javascript(
      view, script.c_str(), -1, nullptr, nullptr, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        auto& into = *static_cast<Answer*>(data);
        GError* raised = nullptr;
        const auto value =
            GRef<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &raised));
        const GErrorPtr error(raised);
        into.text = value ? GCharPtr(jsc_value_to_string(value.get())).get() : error->message;
        into.done = true;
      },
      &answer);
  EXPECT_TRUE(wait([&] { return answer.done; }, 10)) << script;
  return answer.text;
}

std::vector<int> processesBelow(const std::string& name) {
  const auto processes = allProcesses();
  std::set<int> ours{getpid()};
  std::vector<int> found;
  for (bool grew = true; grew;) {
    grew = false;
    for (const auto& process : processes) {
      if (ours.count(process.parent) == 0 || !ours.insert(process.id).second) continue;
      grew = true;
      if (process.name.find(name) != std::string::npos) found.push_back(process.id);
    }
  }
  return found;
}

}  // namespace orivex::gtk

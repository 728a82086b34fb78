#include <vector>

#include <gtest/gtest.h>

#include "settings/Options.h"

namespace orivex::demo {
namespace {

struct Row {
  std::vector<std::string> arguments;
  Settings expected;
};

Options parse(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "orivex-demo");
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (auto& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  return parseOptions(static_cast<int>(arguments.size()), pointers.data());
}

const Settings remembered{.server = "http://remembered.example",
                          .entryId = "kept",
                          .key = "kept-key",
                          .push = true,
                          .statusBarHeight = 24,
                          .topInset = 24,
                          .bottomInset = 12};

Settings with(void (*change)(Settings&)) {
  auto settings = remembered;
  change(settings);
  return settings;
}

TEST(DemoOptionsTest, ReplaceWhatIsRememberedOnlyWhereTheyAreGiven) {
  const Row rows[] = {
      {{}, remembered},
      {{"--server", "https://chat.example"}, with([](Settings& s) { s.server = "https://chat.example"; })},
      {{"--server="}, with([](Settings& s) { s.server.clear(); })},
      {{"--entry", "E", "--key=K"}, with([](Settings& s) { s.entryId = "E", s.key = "K"; })},
      {{"--push"}, remembered},
      {{"--present"}, with([](Settings& s) { s.push = false; })},
      {{"--status-bar", "0"}, with([](Settings& s) { s.statusBarHeight = 0; })},
      {{"--inset-top=47", "--inset-bottom=33.5"}, with([](Settings& s) { s.topInset = 47, s.bottomInset = 33.5; })}};
  for (const auto& [arguments, expected] : rows) {
    auto settings = remembered;
    parse(arguments).applyTo(settings);
    EXPECT_EQ(settings, expected) << ::testing::PrintToString(arguments);
  }
}

TEST(DemoOptionsTest, RefuseWhatTheyDoNotUnderstand) {
  const std::vector<std::string> rows[] = {{"--entry"},           {"--status-bar", "tall"}, {"--status-bar=-1"},
                                           {"--inset-top=200.5"}, {"--push", "--present"},  {"http://chat.example"},
                                           {"--no-such-option"}};
  for (const auto& arguments : rows) EXPECT_THROW(parse(arguments), UsageError) << ::testing::PrintToString(arguments);
}

}  // namespace
}  // namespace orivex::demo

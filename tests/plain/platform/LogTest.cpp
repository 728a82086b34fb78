#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/LogLines.h"

namespace orivex {
namespace {

class LogTest : public ::testing::Test {
 protected:
  LogLines log_;
};

TEST_F(LogTest, AnEntryIsOneLineThatATerminalShowsAsItIs) {
  const struct {
    std::string text;
    std::string printed;
    std::string debugPrinted;
  } rows[] = {
      {"plain 你好", "plain 你好", "\"plain 你好\""},
      {"say \"hi\" \\", "say \"hi\" \\", "\"say \\\"hi\\\" \\\\\""},
      {"a\nforged\r\tb", "a\\nforged\\r\\tb", "\"a\\nforged\\r\\tb\""},
      {std::string("\x1B[31m\0\x7F", 7), "\\x1b[31m\\x00\\x7f", "\"\\x1b[31m\\x00\\x7f\""},
      // The control characters past ASCII reach a terminal as well: U+009B opens a sequence, U+0085 breaks the line.
      {"\xC2\x9B"
       "31m\xC2\x85 \xC2\xA9",
       "\\xc2\\x9b31m\\xc2\\x85 ©", "\"\\xc2\\x9b31m\\xc2\\x85 ©\""},
  };
  for (const auto& row : rows) {
    log::print(row.text);
    log::debugPrint(row.text);
    EXPECT_EQ(log_.take(), (std::vector<std::string>{row.printed, row.debugPrinted}));
  }
}

TEST_F(LogTest, ALongEntryIsCutBetweenCharactersAndNamesItsLength) {
  log::print(std::string(4096, 'x'));
  log::print(std::string(4095, 'x') + "你");
  log::print(std::string(4093, 'x') + "你好");
  log::print(std::string(5000, '\x80'));
  const auto lines = log_.get();
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0], std::string(4096, 'x'));
  EXPECT_EQ(lines[1], std::string(4095, 'x') + "... (4098 bytes)");
  EXPECT_EQ(lines[2], std::string(4093, 'x') + "你... (4099 bytes)");
  EXPECT_GT(lines[3].size(), 4000U) << "what is no UTF-8 is cut as well, not dropped";
  log::setEnabled(false);
  log::print("a");
  log::debugPrint("b");
  EXPECT_EQ(log_.get().size(), 4U);
}

TEST_F(LogTest, EntriesOfSeveralThreadsComeOneAtATime) {
  const auto write = [] {
    for (int count = 0; count < 500; ++count) log::print("entry");
  };
  std::thread other(write);
  write();
  other.join();
  EXPECT_EQ(log_.get(), std::vector<std::string>(1000, "entry"));
}

TEST_F(LogTest, ASinkMayLogAndReplaceItself) {
  std::string lines;
  log::setSink([&](std::string_view line) {
    lines += line;
    log::print("from inside");
    log::setSink([&](std::string_view later) { lines.append(" ").append(later); });
  });
  ::testing::internal::CaptureStderr();
  log::print("one");
  log::print("two");
  EXPECT_EQ(lines, "one two");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "from inside\n");
}

TEST(FatalError, EndsTheProcessWithOneLine) {
  EXPECT_DEATH(fatalError("OrivexSDK/ChatManager:30", "no address"),
               "^OrivexSDK/ChatManager:30: Fatal error: no address\n$");
}

}  // namespace
}  // namespace orivex

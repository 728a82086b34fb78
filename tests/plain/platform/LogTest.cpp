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
}

TEST_F(LogTest, EntriesUpToTheLevelAreWrittenAndFailuresAlways) {
  const auto writeAll = [] {
    for (const auto level : {log::Level::trace, log::Level::debug, log::Level::info, log::Level::warning}) {
      log::print(std::to_string(static_cast<int>(level)), level);
    }
    log::debugPrint("0", log::Level::error);
  };
  log::setEnabled(false);
  writeAll();
  EXPECT_EQ(log_.take(), (std::vector<std::string>{"1", "\"0\""}));
  log::setLevel(log::Level::debug);
  writeAll();
  EXPECT_EQ(log_.take(), (std::vector<std::string>{"3", "2", "1", "\"0\""}));
  log::setEnabled(true);
  writeAll();
  EXPECT_EQ(log_.take().size(), 5U);
}

TEST_F(LogTest, TokensAreMaskedBelowTrace) {
  const struct {
    const char* text;
    const char* written;
  } rows[] = {
      {"no route to https://a.example/?access_token=K1&x-entry=e",
       "no route to https://a.example/?access_token=***&x-entry=e"},
      {"?x=1&ACCESS_TOKEN=K1#top and ?access_token=K2", "?x=1&ACCESS_TOKEN=***#top and ?access_token=***"},
      {"next=%3Faccess_token%3DK1&y", "next=%3Faccess_token%3D***&y"},
      {"Authorization: Bearer K1", "Authorization: ***"},
      {R"({"authorization":"Bearer K1","appKey":"K2","n":1})", R"({"authorization":"***","appKey":"***","n":1})"},
      {R"("{\"app_key\":\"K1\"}")", R"("{\"app_key\":\"***\"}")"},
      {"access_token=", "access_token="},
      {"access_token=&appkey=K1", "access_token=&appkey=***"},
      {"the access_token K1 is old", "the access_token *** is old"},
      {"no appkeys, no authorizations", "no appkeys, no authorizations"},
  };
  for (const auto& row : rows) {
    log::setLevel(log::Level::debug);
    log::print(row.text);
    log::setLevel(log::Level::trace);
    log::print(row.text);
    EXPECT_EQ(log_.take(), (std::vector<std::string>{row.written, row.text}));
  }
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
  const auto elsewhere = ::testing::internal::GetCapturedStderr();
  EXPECT_TRUE(elsewhere.ends_with("Z Orivex debug: from inside\n")) << elsewhere;
}

TEST(FatalError, EndsTheProcessWithOneLine) {
  EXPECT_DEATH(fatalError("OrivexSDK/ChatManager:30", "no address"),
               "^OrivexSDK/ChatManager:30: Fatal error: no address\n$");
}

}  // namespace
}  // namespace orivex

#include <gtest/gtest.h>

#include "KeyFileUserDefaults.h"
#include "support/LogLines.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

using Text = std::optional<std::string>;

TEST(KeyFileUserDefaultsTest, ReadsWhatAVisitorMayWriteAndNothingElse) {
  struct Case {
    const char* contents;
    bool asBool;
    Text asText;
  };
  const Case cases[] = {
      {"[Defaults]\nkey=true\n", true, "true"},
      {"# a note\n\n[Defaults]\n key = 1\n", true, "1"},
      {"[Defaults]\nkey=false\n", false, "false"},
      {"[Defaults]\nkey=Inches\n", false, "Inches"},
      {"[Defaults]\nkey=\xE8\x8B\xB1\xE5\xAF\xB8\n", false, "\xE8\x8B\xB1\xE5\xAF\xB8"},
      {"[Defaults]\nkey=\n", false, ""},
      {"[Defaults]\nother=true\n", false, std::nullopt},
      {"[Others]\nkey=true\n", false, std::nullopt},
      {"", false, std::nullopt},
      {"key=true\n", false, std::nullopt},
      {"[Defaults]\nkey=true\nthis is no line of a key file\n", false, std::nullopt},
  };
  const TemporaryFolder folder;
  for (const auto& [contents, asBool, asText] : cases) {
    SCOPED_TRACE(contents);
    const KeyFileUserDefaults defaults(folder.write("defaults.ini", contents));
    EXPECT_EQ(defaults.boolForKey("key"), asBool);
    EXPECT_EQ(defaults.stringForKey("key"), asText);
  }
}

TEST(KeyFileUserDefaultsTest, SeesEachChangeAndTellsAFailureOnce) {
  const TemporaryFolder folder;
  const LogLines lines;
  const KeyFileUserDefaults defaults(folder.path() / "defaults.ini");
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_FALSE(defaults.boolForKey("enable_vconsole"));
  EXPECT_EQ(lines.get().size(), 0U) << "most visitors have no file";
  const auto file = folder.write("defaults.ini", "[Defaults]\nenable_eruda=true\n");
  EXPECT_TRUE(defaults.boolForKey("enable_eruda"));
  folder.write("defaults.ini", "[Defaults]\nenable_eruda=fals\n");
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_EQ(lines.get().size(), 0U);
  folder.write("defaults.ini", "nonsense");
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_FALSE(defaults.stringForKey("enable_eruda"));
  EXPECT_EQ(lines.get().size(), 1U) << "broken, told once";
  std::filesystem::remove(file);
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_EQ(lines.get().size(), 1U) << "missing again";
}

}  // namespace
}  // namespace orivex::gtk

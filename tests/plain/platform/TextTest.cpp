#include <cstdlib>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "orivex/platform/base/Text.h"

namespace orivex {
namespace {

TEST(Text, ADoublesTextIsTheShortestThatReadsBackWithADecimal) {
  const struct {
    double value;
    const char* text;
  } rows[] = {
      {0, "0.0"},
      {-0.0, "-0.0"},
      {34.5, "34.5"},
      {0.1 + 0.2, "0.30000000000000004"},
      {1234567, "1234567.0"},
      {0.0001, "0.0001"},
      {9007199254740992, "9007199254740992.0"},
      {1e16, "1e+16"},
      {1e-5, "1e-05"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(doubleText(row.value), row.text);
    EXPECT_EQ(std::strtod(row.text, nullptr), row.value);
  }
}

TEST(Text, OnlyWellFormedUtf8HasCodePoints) {
  const struct {
    std::string utf8;
    std::u32string points;
    bool valid;
  } rows[] = {
      {"", U"", true},
      {std::string("a\0b", 3), std::u32string(U"a\0b", 3), true},
      {"é你😀", U"é你😀", true},
      {"\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF", U"\uD7FF\uE000\U0010FFFF", true},
      {"\x80", U"", false},              // a continuation with nothing to continue
      {"a\xC3", U"", false},             // cut off
      {"\xC0\xAF", U"", false},          // overlong
      {"\xF0\x8F\xBF\xBF", U"", false},  //
      {"\xED\xA0\x80", U"", false},      // a surrogate
      {"\xF4\x90\x80\x80", U"", false},  // past the last code point
      {"\xFF", U"", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isValidUtf8(row.utf8), row.valid) << row.utf8;
    EXPECT_EQ(codePoints(row.utf8), row.points) << row.utf8;
  }
}

}  // namespace
}  // namespace orivex

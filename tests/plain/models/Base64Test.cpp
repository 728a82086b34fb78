#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "orivex/models/Base64.h"

namespace orivex {
namespace {

Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

TEST(Base64, AgreesWithTheStandardsExamples) {
  constexpr std::pair<std::string_view, std::string_view> rows[] = {
      {"", ""},        {"f", "Zg=="},          {"fo", "Zm8="},
      {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}, {"\xFB\xEF\xBE\xFF", "++++/w=="},
  };
  for (const auto& [plain, encoded] : rows) {
    EXPECT_EQ(base64Encode(bytesOf(plain)), encoded);
    EXPECT_EQ(base64Decode(encoded), bytesOf(plain)) << encoded;
  }
}

TEST(Base64, EveryByteSurvivesAtEveryPlaceAndLength) {
  Bytes bytes;
  for (unsigned i = 0; i < 1027; ++i) {
    ASSERT_EQ(base64Decode(base64Encode(bytes)), bytes) << "length " << i;
    bytes.push_back(static_cast<std::uint8_t>(i * 7 + i / 256));
  }
}

TEST(Base64, RefusesWhatItWouldNotWrite) {
  constexpr std::array<std::string_view, 18> rows{
      "A",    "AQ",   "AQI",   "AQIDA", "AQ=",       "AQI==",  "====", "=AQI", "A=QI",
      "A===", "AQ=I", "AQID ", " AQID", "AQ\nID===", "AQID\n", "-_-_", "AQ*D", "AR==",
  };
  for (const std::string_view row : rows) {
    EXPECT_EQ(base64Decode(row), std::nullopt) << row;
  }
  EXPECT_EQ(base64Decode("AQJ="), std::nullopt) << "stray bits after two bytes";
  EXPECT_EQ(base64Decode(std::string("AQ\0D", 4)), std::nullopt);
  EXPECT_EQ(base64Decode("AQ\xC3\xA9"), std::nullopt);
}

}  // namespace
}  // namespace orivex

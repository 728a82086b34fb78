#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/PageModels.h"

namespace orivex {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Encode, TextIsEscapedOnlyWhereJsonDemandsIt) {
  struct Row {
    std::string_view id;
    std::string text;
    std::string_view json;
  };
  const std::array rows{
      Row{"quotes", R"(a"b\c)", R"(a\"b\\c)"},
      Row{"slash", "</script>", "</script>"},
      Row{"short forms", "\b\t\n\f\r", R"(\b\t\n\f\r)"},
      Row{"controls", std::string("\0\x01\x1F", 3), R"(\u0000\u0001\u001f)"},
      Row{"delete", "\x7F", "\x7F"},
      Row{"Chinese", "您好,世界", "您好,世界"},
      Row{"line separators", "\u2028\u2029", "\u2028\u2029"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.id);
    // An escape may fall anywhere within the eight bytes that are looked at together.
    for (std::size_t shift = 0; shift < 17; ++shift) {
      const std::string around(shift, '~');
      const auto text = std::string(around).append(row.text).append(around);
      const auto json = std::string(R"({"content":")").append(around).append(row.json).append(around).append(R"("})");
      EXPECT_EQ(encode(MessageBody{.content = text}), json);
      EXPECT_EQ(decode<MessageBody>(json).content, text);
    }
  }
}

TEST(Encode, NumbersTakeTheFewestDigitsThatReadBackTheSame) {
  struct Row {
    double number;
    std::string_view json;
  };
  constexpr std::array rows{
      Row{0.0, "0"},
      Row{-0.0, "-0"},
      Row{100000, "100000"},
      Row{-31457280, "-31457280"},
      Row{0.1, "0.1"},
      Row{0.0001, "0.0001"},
      Row{0.00001, "1e-05"},
      Row{1.0 / 3, "0.3333333333333333"},
      Row{1e23, "1e+23"},
      Row{std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      Row{std::numeric_limits<double>::denorm_min(), "5e-324"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(encode(MessageBody{.duration = row.number}), R"({"duration":)" + std::string(row.json) + "}");
    EXPECT_EQ(decode<MessageBody>(encode(MessageBody{.duration = row.number})).duration, row.number);
  }
}

TEST(Encode, SinglePrecisionIsNotWidened) {
  EXPECT_EQ(encode(MessageBody{.width = 0.1F, .height = 1080}), R"({"width":0.1,"height":1080})");
  EXPECT_EQ(encode(MessageBody{.width = 16777217.0F}), R"({"width":16777216})");
  EXPECT_EQ(encode(MessageBody{.width = 3.4028235e38F}), R"({"width":3.4028235e+38})");
}

TEST(Encode, WhatJsonCannotHoldIsNamedByItsPath) {
  struct Row {
    MessageBody body;
    std::string_view message;
  };
  const std::string notText = "ab\xC3";
  const std::array rows{
      Row{{.duration = infinity}, "messageBody.duration: not a finite number"},
      Row{{.width = std::numeric_limits<float>::quiet_NaN()}, "messageBody.width: not a finite number"},
      Row{{.content = notText}, "messageBody.content: not UTF-8 text"},
      Row{{.content = std::string(1000, 'x') + "\xFF" + std::string(1000, 'x')}, "messageBody.content: not UTF-8 text"},
      Row{{.customItems = {{{}, {.customMenus = {{{.visible = {{"a", notText}}}}}}}}},
          "messageBody.customItems[1].customMenus[0].visible[1]: not UTF-8 text"},
      Row{{.businessProps = {{{"k\n", notText}}}}, "messageBody.businessProps.k?: not UTF-8 text"},
      Row{{.businessProps = {{{std::string(50, '\x97'), ""}}}},
          "messageBody.businessProps.?????????????????????????????????????...: not UTF-8 text"},
  };
  for (const Row& row : rows) {
    MessageModel message;
    message.messageBody = std::make_shared<MessageBody>(row.body);
    try {
      ADD_FAILURE() << encode(message);
    } catch (const EncodingError& error) {
      EXPECT_EQ(error.what(), row.message);
    }
  }
  EXPECT_EQ(encode(MessageBody{.content = "next"}), R"({"content":"next"})") << "a failure leaves nothing behind";
}

TEST(Encode, LargeRecordsAreWhole) {
  MessageBody body{.content = std::string(3'000'000, '\n'), .image = Bytes(5'000'000, 0xA5)};
  body.customMenus.emplace(3000, MessageCustomMenus{.title = std::string(20, '"')});
  EXPECT_EQ(decode<MessageBody>(encode(body)), body);
}

}  // namespace
}  // namespace orivex

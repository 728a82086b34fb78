#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/PageModels.h"
#include "orivex/models/UploadModels.h"

namespace orivex {
namespace {

template <class Record>
std::string faultOf(std::string_view json) {
  try {
    decode<Record>(json);
    return "none";
  } catch (const DecodingError& error) {
    return error.what();
  }
}

/// A text and the whole message that decoding it fails with.
struct Fault {
  std::string_view json;
  std::string_view message;
};

template <class Record>
void expectFaults(std::span<const Fault> rows) {
  for (const Fault& row : rows) EXPECT_EQ(faultOf<Record>(row.json), row.message) << row.json;
}

std::string nested(std::size_t levels) {
  std::string json;
  for (std::size_t i = 1; i < levels; ++i) json += i % 2 == 0 ? "[" : R"({"x":)";
  json += levels % 2 == 0 ? "[]" : "{}";
  for (std::size_t i = levels - 1; i > 0; --i) json += i % 2 == 0 ? "]" : "}";
  return json;
}

TEST(Decode, AValueOfAnotherTypeIsNamedByItsPath) {
  constexpr std::array rows{
      Fault{R"([{}])", "expected an object, found an array"},
      Fault{"null", "expected an object, found null"},
      Fault{" true ", "expected an object, found a boolean"},
      Fault{R"({"mId":"123"})", "mId: expected a 64-bit integer, found a string"},
      Fault{R"({"mType":true})", "mType: expected a 64-bit integer, found a boolean"},
      Fault{R"({"mType":1.5})", "mType: expected a 64-bit integer, found 1.5"},
      Fault{R"({"mId":9223372036854775808})", "mId: expected a 64-bit integer, found 9223372036854775808"},
      Fault{R"({"mId":-9223372036854775809})", "mId: expected a 64-bit integer, found -9223372036854775809"},
      Fault{R"({"mId":1e99999999999999999999})", "mId: expected a 64-bit integer, found 1e99999999999999999999"},
      Fault{R"({"mId":11111111112222222222333333333344444444445.5})",
            "mId: expected a 64-bit integer, found 1111111111222222222233333333334444444444..."},
      Fault{R"({"createTime":"1"})", "createTime: expected a number, found a string"},
      Fault{R"({"createTime":1e309})", "createTime: expected a number of double precision, found 1e309"},
      Fault{R"({"cMid":7})", "cMid: expected a string, found a number"},
      Fault{R"({"isSensitive":1})", "isSensitive: expected a boolean, found a number"},
      Fault{R"({"messageBody":{"fileSize":"1024"}})", "messageBody.fileSize: expected a number, found a string"},
      Fault{R"({"messageBody":{"width":3.5e38}})",
            "messageBody.width: expected a number of single precision, found 3.5e38"},
      Fault{R"({"messageBody":{"image":"AQI"}})", "messageBody.image: expected Base64 text, found other text"},
      Fault{R"({"messageBody":{"customItems":[{},{},{"customMenus":"x"}]}})",
            "messageBody.customItems[2].customMenus: expected an array, found a string"},
      Fault{R"({"messageBody":{"customMenus":[{"visible":["a",1,{}]}]}})",
            "messageBody.customMenus[0].visible[1]: expected a string, found a number"},
      Fault{R"({"messageBody":{"businessProps":{"a":"b","c":null}}})",
            "messageBody.businessProps.c: expected a string, found null"},
      Fault{R"({"messageBody":{"businessProps":{"\n\u4f60":{}}}})",
            "messageBody.businessProps.?你: expected a string, found an object"},
      Fault{R"({"messageBody":{"businessProps":{"一二三四五六七八九十一二三四五六":1}}})",
            "messageBody.businessProps.一二三四五六七八九十一二三...: expected a string, found a number"},
  };
  expectFaults<MessageModel>(rows);
}

TEST(Decode, ARequiredKeyHasToBeThere) {
  constexpr std::array post{
      Fault{"{}", "deviceId: required, but missing"},
      Fault{R"({"deviceid":"d"})", "deviceId: required, but missing"},
      Fault{R"({"deviceId":null})", "deviceId: expected a string, found null"},
      Fault{R"({"deviceId":"d","deviceId":null})", "deviceId: expected a string, found null"},
      Fault{R"({"deviceId":"d1","fileSize":"1024"})", "fileSize: expected a 64-bit integer, found a string"},
  };
  expectFaults<PostMessageModel>(post);
  constexpr std::array attachment{
      Fault{R"({"suffix":"pdf"})", "type: required, but missing"},
      Fault{R"({"type":"File"})", "suffix: required, but missing"},
  };
  expectFaults<UploadFileInfoModel>(attachment);
  constexpr std::array reply{
      Fault{R"({"url":"","actualContentType":""})", "inputContentType: required, but missing"},
  };
  expectFaults<UploadResposeModel>(reply);
  constexpr std::array event{
      Fault{R"({"name":"open","attributes":{"k":1}})", "attributes.k: expected a string, found a number"},
  };
  expectFaults<TrackModel>(event);
}

/// Each of these is refused wherever it stands: as the document, in a field, in what is skipped and behind a value of
/// the wrong type.
TEST(Decode, MalformedJsonIsRefusedEverywhere) {
  for (const std::string value : {"",
                                  "[",
                                  "]",
                                  "-",
                                  "01",
                                  "1.",
                                  ".5",
                                  "1e",
                                  "[1}",
                                  "[1,]",
                                  "tru",
                                  "NaN",
                                  "nulls",
                                  "1_000",
                                  "[1 2]",
                                  "{a:1}",
                                  R"({"a"})",
                                  R"({"a":1,})",
                                  R"({,"a":1})",
                                  R"(")",
                                  R"("\x")",
                                  R"("\u12")",
                                  R"("\ud800")",
                                  R"("\udc00")",
                                  R"("\ud800\u0041")",
                                  "\"\x01\"",
                                  "\"\xFF\"",
                                  "\"\xED\xA0\x80\"",
                                  R"({"\ud800":1})",
                                  R"("a":"b")"}) {
    for (const std::string& json :
         {value, R"({"x":)" + value + "}", R"({"x":[{"y":)" + value + "}]}", R"({"mId":)" + value + "}",
          R"({"mId":"wrong","x":)" + value + "}", R"({"messageBody":{"customItems":[{},)" + value + "]}}",
          R"({"messageBody":{"image":[1,)" + value + "]}}"}) {
      EXPECT_TRUE(faultOf<MessageModel>(json).starts_with("malformed JSON"))
          << json << " " << faultOf<MessageModel>(json);
    }
  }
}

TEST(Decode, MalformedDocumentsSayWhatIsWrong) {
  constexpr std::array rows{
      Fault{"", "malformed JSON at byte 0: a value is missing"},
      Fault{"\xEF\xBB\xBF{}", "malformed JSON at byte 0: it begins with a byte order mark"},
      Fault{"{}x", "malformed JSON at byte 2: something follows its end"},
      Fault{R"({"a":1)", "malformed JSON at byte 6: a comma or closing bracket is missing"},
      Fault{R"({"a":"b)", "malformed JSON at byte 7: a string without an end"},
      Fault{"{\"a\":\"\xC0\x80\"}", "malformed JSON: invalid UTF-8"},
      Fault{"{\"a\":\"\t\"}", "malformed JSON at byte 6: a control character in a string"},
      Fault{R"({"a":01})", "malformed JSON at byte 5: a bad number"},
      Fault{R"({"a":nil})", "malformed JSON at byte 5: an unknown word"},
      Fault{R"({"a":"\q" })", "malformed JSON at byte 6: a bad escape in a string"},
  };
  expectFaults<MessageModel>(rows);
}

TEST(Decode, NestingEndsAt512Levels) {
  EXPECT_EQ(faultOf<MessageModel>(nested(512)), "none");
  EXPECT_TRUE(faultOf<MessageModel>(nested(513)).ends_with(": nested deeper than 512 levels"));
  const std::string hostile = R"({"x":)" + std::string(1'000'000, '[');
  EXPECT_TRUE(faultOf<MessageModel>(hostile).starts_with("malformed JSON"));
  EXPECT_TRUE(faultOf<MessageModel>(hostile + std::string(1'000'000, ']') + "}").ends_with("512 levels"));
}

TEST(Decode, UnknownKeysHoldWhateverTheyLike) {
  constexpr std::string_view json =
      R"({"x":[1,[2,{"y":null}],"\u4f60\n",true,false,{}],"":-0.0e-0,"big":1e999,"long":123456789012345678901234567890,)"
      R"("mid":"x","mId ":"x","MID":"x","mIdd":1.5,"timestamp":{},"mId":7})";
  EXPECT_EQ(decode<MessageModel>(json).mId, 7);
}

TEST(Decode, WhatIsMissingOrNullIsAbsent) {
  const auto message = decode<MessageModel>(R"({"mId":null,"cMid":null,"messageBody":null,"isSensitive":null})");
  EXPECT_EQ(encode(message), "{}");
  EXPECT_EQ(encode(decode<MessageModel>(" {\n} ")), "{}");
  EXPECT_EQ(message.messageBody, nullptr);
  EXPECT_EQ(decode<MessageBody>(R"({"image":null,"customItems":null,"businessProps":null})"), MessageBody{});
}

TEST(Decode, OfAKeyThatComesTwiceTheLastCounts) {
  EXPECT_EQ(decode<MessageModel>(R"({"mId":1,"mId":2})").mId, 2);
  EXPECT_EQ(decode<MessageModel>(R"({"mId":1,"m\u0049d":2})").mId, 2) << "however it is written";
  EXPECT_EQ(decode<MessageModel>(R"({"mId":1,"mId":null})").mId, std::nullopt);
  EXPECT_EQ(faultOf<MessageModel>(R"({"mId":2,"mId":"no"})"), "mId: expected a 64-bit integer, found a string");

  const auto body = decode<MessageModel>(R"({"messageBody":{"content":"a","title":"b"},"messageBody":{"title":"c"}})");
  EXPECT_EQ(*body.messageBody, MessageBody{.title = "c"}) << "replaced, not merged";
  EXPECT_EQ(decode<MessageBody>(R"({"customMenus":[{},{},{}],"customMenus":[{"type":1}]})"),
            (MessageBody{.customMenus = {{{.type = 1}}}}));
  EXPECT_EQ(decode<TrackModel>(R"({"attributes":{"k":"c","j":"d","k":"a","j":"b"}})"),
            (TrackModel{.attributes = {{{"k", "a"}, {"j", "b"}}}}));
}

TEST(Decode, AnIntegerMayBeWrittenInAnyWayThatIsWhole) {
  struct Row {
    std::string_view json;
    std::int64_t value;
  };
  constexpr std::array rows{
      Row{"-0.0", 0},
      Row{"0e99999999999999999999", 0},
      Row{"1E+3", 1000},
      Row{"1200e-2", 12},
      Row{"-1.25e2", -125},
      Row{"9007199254740993.0", 9007199254740993},
      Row{"9223372036854775807.000", std::numeric_limits<std::int64_t>::max()},
      Row{"-9.223372036854775808e18", std::numeric_limits<std::int64_t>::min()},
      Row{"0.00000000000000000000000000001e30", 10},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(decode<MessageModel>(R"({"mId": )" + std::string(row.json) + " }").mId, row.value) << row.json;
  }
}

TEST(Decode, NumbersAreRoundedOnce) {
  EXPECT_EQ(decode<MessageBody>(R"({"duration":0.1,"fileSize":1024})"),
            (MessageBody{.duration = 0.1, .fileSize = 1024}));
  EXPECT_EQ(decode<MessageBody>(R"({"duration":1e-400})").duration, 0.0);
  EXPECT_EQ(decode<MessageBody>(R"({"width":0.1,"height":-2e-60})"), (MessageBody{.width = 0.1F, .height = -0.0F}));
  // By way of a double this would fall on a tie and end one step higher.
  EXPECT_EQ(decode<MessageBody>(R"({"width":1.00000017881393432617187499})").width, 0x1.000002p0F);
}

TEST(Decode, TextKeepsEveryCharacter) {
  EXPECT_EQ(decode<MessageBody>(R"({"content":"\"\\\/\b\f\n\r\t\u4f60\ud83d\ude00 好"})").content,
            "\"\\/\b\f\n\r\t你😀 好");
  EXPECT_EQ(decode<MessageBody>(R"({"content":"a\u0000b"})").content, std::string("a\0b", 3));
  EXPECT_EQ(decode<MessageBody>(R"({"image":"\/w\u003d\u003d"})").image, Bytes{0xFF});
}

TEST(DecodeText, TakesOneStringAndNothingElse) {
  EXPECT_EQ(decodeText(R"( "a\u4f60\"" )"), "a你\"");
  EXPECT_EQ(decodeText(R"("")"), "");
  constexpr std::array<std::string_view, 10> rows{
      "", "1", "null", R"({"a":"b"})", R"(["a"])", R"("a)", R"("a" "b")", R"("a",)", R"("\ud800")", "\"\xFF\"",
  };
  for (const std::string_view row : rows) EXPECT_EQ(decodeText(row), std::nullopt) << row;
}

}  // namespace
}  // namespace orivex

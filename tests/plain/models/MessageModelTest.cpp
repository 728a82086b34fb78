#include <memory>
#include <regex>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"

namespace orivex {
namespace {

static_assert(std::is_const_v<decltype(MessageModel::messageUUId)>);
static_assert(!std::is_copy_constructible_v<MessageModel>, "two messages would share an identity");

TEST(MessageModel, EveryMessageHasAnIdentityOfItsOwnAndKeepsItWhenMoved) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    const std::string made = MessageModel().messageUUId;
    EXPECT_TRUE(std::regex_match(made, form)) << made;
    seen.insert(made);
    seen.insert(decode<MessageModel>(R"({"mId":1,"messageUUId":"fixed"})").messageUUId);
  }
  EXPECT_EQ(seen.size(), 200U);
  MessageModel moved;
  const std::string identity = moved.messageUUId;
  EXPECT_EQ(MessageModel(std::move(moved)).messageUUId, identity);
}

TEST(MessageModel, ArgumentsAreStoredInTheirOrder) {
  const auto body = std::make_shared<MessageBody>(MessageBody{.content = "hi"});
  const MessageModel message(1, 2.5, 3.5, "four", "five", 6, body, "eight", "nine", "ten", 11, 12, true, 14.5, 15);
  EXPECT_EQ(message.timestamp, 3.5);
  EXPECT_EQ(message.timeFormatInfo, "four");
  EXPECT_EQ(message.messageBody, body) << "a body is shared, not copied";
  EXPECT_EQ(encode(message),
            R"({"mId":1,"createTime":2.5,"cMid":"five","mType":6,"messageBody":{"content":"hi"},)"
            R"("optionSelected":"eight","sUserId":"nine","sessionId":"ten","mStatus":11,"memberType":12,)"
            R"("isSensitive":true,"sessionStartTime":14.5,"renderMemberType":15})")
      << "what is for display alone stays out of JSON";
  // Even of another type: to the decoder they are keys like any other.
  EXPECT_EQ(encode(decode<MessageModel>(R"({"timestamp":"no","timeFormatInfo":7,"messageUUId":null})")), "{}");
}

TEST(MessageModel, TheTwoShapesReadTheirOwnStatusOnly) {
  constexpr std::string_view both = R"({"mStatus":1,"msgStatus":2,"messageBody":{"voiceLocalPath":"/v"}})";
  EXPECT_EQ(decode<MessageModel>(both).mStatus, 1);
  const auto incoming = decode<incoming::MessageModel>(both);
  EXPECT_EQ(incoming.msgStatus, 2);
  EXPECT_EQ(incoming.messageBody->voiceLocalPath, "/v");
  EXPECT_EQ(decode<MessageModel>(R"({"msgStatus":2})").mStatus, std::nullopt);
  EXPECT_EQ(decode<incoming::MessageModel>(R"({"mStatus":1})").msgStatus, std::nullopt);
}

TEST(IncomingRecords, HoldWhatThePageReportsAndNothingLocal) {
  const auto body = decode<incoming::MessageBody>(
      R"({"voiceLocalPath":1,"businessProps":[],"image":"AQID","titleWord":"t","stfTemplateId":4611686018427387904,)"
      R"("pushType":2,"customPageUrl":"u","customItems":[{"cellHeight":3,"isWrap":true}]})");
  EXPECT_EQ(body.image, (Bytes{1, 2, 3}));
  EXPECT_EQ(body.stfTemplateId, 4611686018427387904);
  EXPECT_EQ(body.customPageUrl, "u");
  EXPECT_EQ(body.customItems->at(0).cellHeight, 3) << "elements keep their layout state";
  EXPECT_EQ(decode<incoming::MessageCustomItems>(R"({"cellHeight":"x","customCardName":"n"})").customCardName, "n");
  EXPECT_EQ(decode<MessageBody>(R"({"stfTemplateId":"not ours"})"), MessageBody{});
}

}  // namespace
}  // namespace orivex

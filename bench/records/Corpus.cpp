#include "Corpus.h"

#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include "orivex/models/Codec.h"

namespace orivex::bench {
namespace {

constexpr std::size_t imageBytes = 200'000;
constexpr std::size_t cardItems = 10;
constexpr std::array allKinds{Kind::asciiText, Kind::chineseText, Kind::media, Kind::card, Kind::image};

/// How many of each kind the mixed corpus has; 1,000 in all.
constexpr std::array<std::size_t, allKinds.size()> mixedCounts{350, 350, 199, 100, 1};

std::string numbered(std::string text, std::size_t number) {
  return std::move(text) + std::to_string(number);
}

Bytes noise(std::size_t size) {
  Bytes bytes(size);
  std::uint32_t state = 1;
  for (auto& byte : bytes) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<std::uint8_t>(state >> 24U);
  }
  return bytes;
}

MessageCustomItems cardItem(std::size_t number) {
  return {.customMenus = {{{.type = 1, .title = "Track the parcel", .command = "track", .visible = {{"bot", "agent"}}},
                           {.type = 2, .title = "Return it", .command = "return"}}},
          .customFields = {{{.key = "Order number", .value = numbered("2024061800", number)},
                            {.key = "收货地址", .value = "上海市浦东新区世纪大道一百号"}}},
          .customCardDesc = "Two pieces, dark blue, size 42, in stock",
          .customCardLink = numbered("https://shop.example/orders/2024061800", number),
          .customCardName = "防水徒步鞋 \"Trail\"",
          .customCardAmount = "1299.00",
          .customCardThumbnail = numbered("https://cdn.example/thumbnails/boots.jpg?size=240&v=", number),
          .customCardAmountSymbol = "¥",
          .customCardAmountName = "合计",
          .customCardOriginalAmount = "1599.00",
          .cellHeight = 96.5,
          .isWrap = false};
}

MessageBody bodyOf(Kind kind, std::size_t number) {
  switch (kind) {
    case Kind::asciiText:
      return {
          .msgType = 1,
          .content = "Hello, where is my parcel? It was to come on Monday.\nThe order is \"2024-0618\", thank you."};
    case Kind::chineseText:
      return {.msgType = 1, .content = "您好,我的包裹现在到哪里了?本来说星期一送到的,麻烦您帮我查一下,谢谢!"};
    case Kind::media:
      return {.msgType = 3,
              .mediaUrl = numbered("https://files.example/chat/media/2024/06/18/clip-", number),
              .duration = 12.84,
              .width = 1280.0F,
              .height = 720.5F,
              .contentType = "video/mp4",
              .fileName = numbered("clip-", number),
              .fileSize = 31'457'280.0 + static_cast<double>(number),
              .coverUrl = numbered("https://files.example/chat/covers/2024/06/18/clip-", number),
              .videoName = "VID_20240618.mp4"};
    case Kind::card: {
      MessageBody body{.msgType = 8, .title = "您的订单", .cardType = 2, .cardGuide = "请选择一个订单"};
      body.customItems.emplace();
      for (std::size_t i = 0; i < cardItems; ++i) body.customItems->push_back(cardItem(i));
      body.businessProps = {{"source", "order-list"}, {"channel", "app"}};
      return body;
    }
    case Kind::image:
      return {.msgType = 2, .width = 1024, .height = 768, .image = noise(imageBytes), .name = "photo.jpg"};
  }
  return {};
}

MessageModel messageOf(Kind kind, std::size_t number) {
  MessageModel message;
  message.mId = 17'187'000'000 + static_cast<std::int64_t>(number);
  message.createTime = 1'718'700'000'123.0 + static_cast<double>(number);
  message.cMid = numbered("b3b0c442-98fc-4c14-9afb-f4c8996fb9", number);
  message.mType = 1;
  message.messageBody = std::make_shared<MessageBody>(bodyOf(kind, number));
  message.sUserId = numbered("visitor-", number);
  message.sessionId = "0f8fad5b-d9cb-469f-a165-70867728950e";
  message.mStatus = 2;
  message.memberType = 0;
  message.isSensitive = false;
  message.sessionStartTime = 1'718'699'000'000.0;
  message.renderMemberType = 1;
  return message;
}

void add(Corpus& corpus, Kind kind, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    MessageModel& record = corpus.records.emplace_back(messageOf(kind, i));
    std::string text = encode(record);
    // The page may know more than we do.
    text.insert(1, R"("pageVersion":"3.2.1","flags":{"read":true,"tags":["a",1,null]},)");
    corpus.texts.push_back(std::move(text));
  }
}

}  // namespace

std::string_view nameOf(Kind kind) {
  constexpr std::array<std::string_view, allKinds.size()> names{"ASCII text", "Chinese text", "media", "card", "image"};
  return names[static_cast<std::size_t>(kind)];
}

const Corpus& mixedCorpus() {
  static const Corpus corpus = [] {
    Corpus mixed;
    for (const Kind kind : allKinds) add(mixed, kind, mixedCounts[static_cast<std::size_t>(kind)]);
    return mixed;
  }();
  return corpus;
}

const Corpus& corpusOf(Kind kind) {
  static const auto corpora = [] {
    std::array<Corpus, allKinds.size()> each;
    for (const Kind one : allKinds) add(each[static_cast<std::size_t>(one)], one, one == Kind::image ? 5 : 100);
    return each;
  }();
  return corpora[static_cast<std::size_t>(kind)];
}

}  // namespace orivex::bench

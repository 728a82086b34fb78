#include "HandWrittenReader.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <simdjson.h>

#include "orivex/models/Base64.h"

namespace orivex::bench {
namespace {

using simdjson::ondemand::object;
using simdjson::ondemand::value;

void read(value& from, std::string& into) {
  into = std::string_view(from.get_string());
}
void read(value& from, std::int64_t& into) {
  into = from.get_int64();
}
void read(value& from, double& into) {
  into = from.get_double();
}
void read(value& from, float& into) {
  into = static_cast<float>(double(from.get_double()));
}
void read(value& from, bool& into) {
  into = from.get_bool();
}

void read(value& from, Bytes& into) {
  auto bytes = base64Decode(from.get_string());
  if (!bytes) throw simdjson::simdjson_error(simdjson::INCORRECT_TYPE);
  into = std::move(*bytes);
}

void read(value& from, MessageCustomFields& into);
void read(value& from, MessageCustomMenus& into);
void read(value& from, MessageCustomItems& into);
void read(value& from, MessageBody& into);

template <class Element>
void read(value& from, std::vector<Element>& into) {
  for (value element : from.get_array()) read(element, into.emplace_back());
}

void read(value& from, std::map<std::string, std::string>& into) {
  for (auto field : from.get_object()) {
    const std::string key{std::string_view(field.unescaped_key())};
    value mapped = field.value();
    read(mapped, into[key]);
  }
}

template <class Value>
void readUnlessNull(value& from, std::optional<Value>& into) {
  if (!from.is_null()) read(from, into.emplace());
}

void read(value& from, MessageCustomFields& into) {
  for (auto field : from.get_object()) {
    const std::string_view key = field.unescaped_key();
    value member = field.value();
    if (key == "key") {
      readUnlessNull(member, into.key);
    } else if (key == "value") {
      readUnlessNull(member, into.value);
    }
  }
}

void read(value& from, MessageCustomMenus& into) {
  for (auto field : from.get_object()) {
    const std::string_view key = field.unescaped_key();
    value member = field.value();
    if (key == "type") {
      readUnlessNull(member, into.type);
    } else if (key == "title") {
      readUnlessNull(member, into.title);
    } else if (key == "command") {
      readUnlessNull(member, into.command);
    } else if (key == "visible") {
      readUnlessNull(member, into.visible);
    }
  }
}

void read(value& from, MessageCustomItems& into) {
  for (auto field : from.get_object()) {
    const std::string_view key = field.unescaped_key();
    value member = field.value();
    if (key == "customMenus") {
      readUnlessNull(member, into.customMenus);
    } else if (key == "customFields") {
      readUnlessNull(member, into.customFields);
    } else if (key == "customCardDesc") {
      readUnlessNull(member, into.customCardDesc);
    } else if (key == "customCardLink") {
      readUnlessNull(member, into.customCardLink);
    } else if (key == "customCardName") {
      readUnlessNull(member, into.customCardName);
    } else if (key == "customCardAmount") {
      readUnlessNull(member, into.customCardAmount);
    } else if (key == "customCardThumbnail") {
      readUnlessNull(member, into.customCardThumbnail);
    } else if (key == "customCardAmountSymbol") {
      readUnlessNull(member, into.customCardAmountSymbol);
    } else if (key == "customCardAmountName") {
      readUnlessNull(member, into.customCardAmountName);
    } else if (key == "customCardOriginalAmount") {
      readUnlessNull(member, into.customCardOriginalAmount);
    } else if (key == "cellHeight") {
      readUnlessNull(member, into.cellHeight);
    } else if (key == "isWrap") {
      readUnlessNull(member, into.isWrap);
    }
  }
}

/// The fields of a body that hold text.
std::optional<std::string>* textOf(MessageBody& body, std::string_view key) {
  if (key == "mediaUrl") return &body.mediaUrl;
  if (key == "content") return &body.content;
  if (key == "name") return &body.name;
  if (key == "voiceLocalPath") return &body.voiceLocalPath;
  if (key == "annexLocalPath") return &body.annexLocalPath;
  if (key == "contentType") return &body.contentType;
  if (key == "fileName") return &body.fileName;
  if (key == "videoLocalPath") return &body.videoLocalPath;
  if (key == "coverUrl") return &body.coverUrl;
  if (key == "videoName") return &body.videoName;
  if (key == "linkUrl") return &body.linkUrl;
  if (key == "title") return &body.title;
  if (key == "link_description") return &body.link_description;
  if (key == "imageUrl") return &body.imageUrl;
  if (key == "url") return &body.url;
  if (key == "button") return &body.button;
  if (key == "cardGuide") return &body.cardGuide;
  if (key == "cardDesc") return &body.cardDesc;
  if (key == "cardImg") return &body.cardImg;
  if (key == "cardLink") return &body.cardLink;
  return nullptr;
}

void read(value& from, MessageBody& into) {
  for (auto field : from.get_object()) {
    const std::string_view key = field.unescaped_key();
    value member = field.value();
    if (key == "msgType") {
      readUnlessNull(member, into.msgType);
    } else if (key == "duration") {
      readUnlessNull(member, into.duration);
    } else if (key == "width") {
      readUnlessNull(member, into.width);
    } else if (key == "height") {
      readUnlessNull(member, into.height);
    } else if (key == "image") {
      readUnlessNull(member, into.image);
    } else if (key == "annexLocalData") {
      readUnlessNull(member, into.annexLocalData);
    } else if (key == "fileSize") {
      readUnlessNull(member, into.fileSize);
    } else if (key == "videoCoverImage") {
      readUnlessNull(member, into.videoCoverImage);
    } else if (key == "openMethod") {
      readUnlessNull(member, into.openMethod);
    } else if (key == "cardType") {
      readUnlessNull(member, into.cardType);
    } else if (key == "customFields") {
      readUnlessNull(member, into.customFields);
    } else if (key == "customItems") {
      readUnlessNull(member, into.customItems);
    } else if (key == "customMenus") {
      readUnlessNull(member, into.customMenus);
    } else if (key == "businessProps") {
      readUnlessNull(member, into.businessProps);
    } else if (auto* const text = textOf(into, key)) {
      readUnlessNull(member, *text);
    }
  }
}

void read(object from, MessageModel& into) {
  for (auto field : from) {
    const std::string_view key = field.unescaped_key();
    value member = field.value();
    if (key == "mId") {
      readUnlessNull(member, into.mId);
    } else if (key == "createTime") {
      readUnlessNull(member, into.createTime);
    } else if (key == "cMid") {
      readUnlessNull(member, into.cMid);
    } else if (key == "mType") {
      readUnlessNull(member, into.mType);
    } else if (key == "messageBody") {
      if (member.is_null()) continue;
      into.messageBody = std::make_shared<MessageBody>();
      read(member, *into.messageBody);
    } else if (key == "optionSelected") {
      readUnlessNull(member, into.optionSelected);
    } else if (key == "sUserId") {
      readUnlessNull(member, into.sUserId);
    } else if (key == "sessionId") {
      readUnlessNull(member, into.sessionId);
    } else if (key == "mStatus") {
      readUnlessNull(member, into.mStatus);
    } else if (key == "memberType") {
      readUnlessNull(member, into.memberType);
    } else if (key == "isSensitive") {
      readUnlessNull(member, into.isSensitive);
    } else if (key == "sessionStartTime") {
      readUnlessNull(member, into.sessionStartTime);
    } else if (key == "renderMemberType") {
      readUnlessNull(member, into.renderMemberType);
    }
  }
}

}  // namespace

MessageModel decodeByHand(std::string_view json) {
  static simdjson::ondemand::parser parser;
  static std::vector<char> padded;
  padded.resize(json.size() + simdjson::SIMDJSON_PADDING);
  std::memcpy(padded.data(), json.data(), json.size());
  simdjson::ondemand::document document = parser.iterate(padded.data(), json.size(), padded.size());
  MessageModel record;
  read(document.get_object(), record);
  return record;
}

}  // namespace orivex::bench

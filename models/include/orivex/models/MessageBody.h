#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orivex/Export.h"
#include "orivex/models/Bytes.h"
#include "orivex/models/MessageCard.h"

namespace orivex {

/// What a chat message holds: text, media, a link preview or a card. Codes (`msgType`, `openMethod`, `cardType`) are
/// the chat page's and pass through unchanged. Shared by reference: hold it in a `std::shared_ptr`.
///
/// The fields that name local things are encoded like all others: the record travels whole between the component and
/// the page.
struct MessageBody {
  std::optional<std::int64_t> msgType{};
  std::optional<std::string> mediaUrl{};  ///< voice, image or video on the server
  std::optional<double> duration{};       ///< seconds
  std::optional<float> width{};           ///< pixels
  std::optional<float> height{};          ///< pixels
  std::optional<std::string> content{};   ///< text
  std::optional<Bytes> image{};
  std::optional<std::string> name{};
  std::optional<std::string> voiceLocalPath{};
  std::optional<Bytes> annexLocalData{};  ///< an attachment's bytes
  std::optional<std::string> annexLocalPath{};
  std::optional<std::string> contentType{};  ///< MIME type
  std::optional<std::string> fileName{};
  std::optional<double> fileSize{};  ///< bytes
  std::optional<std::string> videoLocalPath{};
  std::optional<Bytes> videoCoverImage{};
  std::optional<std::string> coverUrl{};  ///< a video's cover image
  std::optional<std::string> videoName{};
  std::optional<std::string> linkUrl{};
  std::optional<std::string> title{};  ///< of a link or card
  std::optional<std::string> link_description{};
  std::optional<std::int64_t> openMethod{};
  std::optional<std::string> imageUrl{};
  std::optional<std::string> url{};
  std::optional<std::string> button{};
  std::optional<std::int64_t> cardType{};
  std::optional<std::string> cardGuide{};
  std::optional<std::string> cardDesc{};
  std::optional<std::string> cardImg{};  ///< address of the card's image
  std::optional<std::string> cardLink{};
  std::optional<std::vector<MessageCustomFields>> customFields{};
  std::optional<std::vector<MessageCustomItems>> customItems{};
  std::optional<std::vector<MessageCustomMenus>> customMenus{};
  std::optional<std::map<std::string, std::string>> businessProps{};

  /// Reads a record out of one JSON object; see the field names for its keys. A value of another type than its field's
  /// fails it, an unknown key does not.
  /// @throws std::runtime_error whose text is one line that names the place.
  ORIVEX_API static MessageBody fromJsonString(std::string_view json);

  /// The record as JSON; empty when it cannot be encoded.
  ORIVEX_API std::string getJsonString() const;

  bool operator==(const MessageBody&) const = default;
};

namespace incoming {

/// A message body as the page reports it: nothing local, and what the server adds. Decode-only.
struct MessageBody {
  std::optional<std::int64_t> msgType{};
  std::optional<std::string> mediaUrl{};
  std::optional<double> duration{};
  std::optional<float> width{};
  std::optional<float> height{};
  std::optional<std::string> content{};
  std::optional<Bytes> image{};
  std::optional<std::string> name{};
  std::optional<std::string> contentType{};
  std::optional<std::string> fileName{};
  std::optional<double> fileSize{};
  std::optional<std::string> coverUrl{};
  std::optional<std::string> videoName{};
  std::optional<std::string> linkUrl{};
  std::optional<std::string> title{};
  std::optional<std::string> link_description{};
  std::optional<std::int64_t> openMethod{};
  std::optional<std::string> imageUrl{};
  std::optional<std::string> url{};
  std::optional<std::string> button{};
  std::optional<std::string> cardImg{};
  std::optional<std::string> cardDesc{};
  std::optional<std::string> cardLink{};
  std::optional<std::int64_t> cardType{};
  std::optional<std::string> cardGuide{};
  std::optional<std::vector<orivex::MessageCustomItems>> customItems{};
  std::optional<std::vector<orivex::MessageCustomFields>> customFields{};
  std::optional<std::vector<orivex::MessageCustomMenus>> customMenus{};
  std::optional<std::string> titleWord{};  ///< title text
  std::optional<std::int64_t> stfTemplateId{};
  std::optional<std::int64_t> pushType{};
  std::optional<std::string> customPageUrl{};

  bool operator==(const MessageBody&) const = default;
};

}  // namespace incoming
}  // namespace orivex

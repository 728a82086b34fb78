#include <array>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "orivex/models/Codec.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/PageModels.h"
#include "orivex/models/ShortcutsModel.h"
#include "orivex/models/UploadModels.h"
#include "orivex/models/UserMappingModel.h"

namespace orivex {
namespace {

constexpr const char* wholeBody =
    R"({"msgType":1,"mediaUrl":"m","duration":2.5,"width":0.1,"height":720,"content":"你好","image":"AQID","name":"n",)"
    R"("voiceLocalPath":"/v","annexLocalData":"/w==","annexLocalPath":"/a","contentType":"text/plain","fileName":"f",)"
    R"("fileSize":31457280,"videoLocalPath":"/p","videoCoverImage":"","coverUrl":"c","videoName":"vn","linkUrl":"l",)"
    R"("title":"t","link_description":"ld","openMethod":2,"imageUrl":"iu","url":"u","button":"b","cardType":3,)"
    R"("cardGuide":"cg","cardDesc":"cd","cardImg":"ci","cardLink":"cl","customFields":[{"key":"k","value":"v"},{}],)"
    R"("customItems":[{"customMenus":[{"type":1,"title":"mt","command":"mc","visible":["x","y"]}],)"
    R"("customFields":[{"key":"k"}],"customCardDesc":"d","customCardLink":"l","customCardName":"n",)"
    R"("customCardAmount":"1.00","customCardThumbnail":"th","customCardAmountSymbol":"¥","customCardAmountName":"an",)"
    R"("customCardOriginalAmount":"2.00","cellHeight":44.5,"isWrap":false}],"customMenus":[],)"
    R"("businessProps":{"a":"1","b":""}})";

const std::string wholeMessage =
    R"({"mId":-9223372036854775808,"createTime":1718700000123,"cMid":"c","mType":9223372036854775807,"messageBody":)" +
    std::string(wholeBody) +
    R"(,"optionSelected":"o","sUserId":"u","sessionId":"s","mStatus":0,"memberType":1,"isSensitive":true,)"
    R"("sessionStartTime":0.5,"renderMemberType":2})";

template <class Record>
std::string again(std::string_view json) {
  return encode(decode<Record>(json));
}

TEST(Records, EveryKeyIsReadAndWrittenBackInTheRecordsOrder) {
  struct Row {
    std::string_view id;
    std::string (*again)(std::string_view);
    std::string text;
  };
  const std::array rows{
      Row{"MessageModel", again<MessageModel>, wholeMessage},
      Row{"PostMessageModel", again<PostMessageModel>,
          R"({"deviceId":"d1","fileSize":1024,"action":"start","mimeTypes":["a/b","c/d"]})"},
      Row{"TrackModel", again<TrackModel>, R"({"name":"open","attributes":{"":"e","k":"v"}})"},
      Row{"ShortcutsModel", again<ShortcutsModel>, R"({"title":"t","shortcutType":3,"command":"c"})"},
      Row{"UploadFileInfoModel", again<UploadFileInfoModel>,
          R"({"name":"n","type":"Video","url":"u","base64Str":"data:image/jpeg;base64,AA==","height":1080,"width":1920,)"
          R"("duration":12.5,"suffix":"mp4","size":5000000000,"mimeType":"video/mp4"})"},
      Row{"UploadResposeModel", again<UploadResposeModel>,
          R"({"url":"u","inputContentType":"a/b","actualContentType":"c/d"})"},
      Row{"FailModel", again<FailModel>, R"({"msg":"文件过大"})"},
      Row{"UserMappingModel", again<UserMappingModel>,
          R"({"identity_id":"i","visitor_name":"v","phone":"p","email":"e","deviceId":"d","app_id":"a",)"
          R"("app_name":"an","env_name":"en"})"},
      Row{"WebViewEnvModel", again<WebViewEnvModel>,
          R"({"app_name":"kep","env_name":"test","hh":47,"bh":34,"os_name":"iOS"})"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.again(row.text), row.text) << row.id;
  EXPECT_EQ(again<TrackModel>(R"({"attributes":{"k":"v","":"e"}})"), R"({"attributes":{"":"e","k":"v"}})")
      << "a map is written in the order of its keys";
}

}  // namespace
}  // namespace orivex

#include "ChatPageAddress.h"
#include "ChatScreenTest.h"

#include "orivex/media/ChatManager.h"

namespace orivex::testing {
namespace {

constexpr const char* path = "/api/oauth2/ciphertext/app/client_chat";

std::string addressText(const UserMappingModel& user, std::string entryId, std::string appKey, std::string payload) {
  return ChatPageAddress{.host = "H",
                         .entryId = std::move(entryId),
                         .appKey = std::move(appKey),
                         .user = user,
                         .statusBarHeight = 47,
                         .bottomInset = 0.5,
                         .payload = std::move(payload)}
      .text();
}

TEST(ChatPageAddressTest, InsertsEverythingButThePayloadRaw) {
  const struct {
    const char* what;
    UserMappingModel user;
    std::string entryId;
    std::string appKey;
    std::string expected;
  } cases[] = {
      {"all fields absent", {}, "", "", "?access_token=&x-entry=&identity_id=&deviceId=&app_id=&app_name=&env_name="},
      {"every field, but name, phone and e-mail are left out",
       {"id", "name", "phone", "mail", "device", "app", "title", "env"},
       "e",
       "k",
       "?access_token=k&x-entry=e&identity_id=id&deviceId=device&app_id=app&app_name=title&env_name=env"},
      {"separators inside values change the query",
       {.identity_id = "u&admin=1"},
       "e&x=1",
       "a=b&c",
       "?access_token=a=b&c&x-entry=e&x=1&identity_id=u&admin=1&deviceId=&app_id=&app_name=&env_name="},
      {"encoded values are not encoded again",
       {.app_name = "%E5%BA%97"},
       "",
       "",
       "?access_token=&x-entry=&identity_id=&deviceId=&app_id=&app_name=%E5%BA%97&env_name="},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(addressText(row.user, row.entryId, row.appKey, "{}"),
              std::string("H") + path + row.expected + "&hh=47.0&bh=0.5&object_value=%7B%7D")
        << row.what;
  }
}

class HostAddressTest : public ChatScreenTest {};

TEST_F(HostAddressTest, IsAcceptedWhenTheWholeAddressParses) {
  constexpr const char* refused = nullptr;
  const struct {
    std::string host;
    const char* origin;  // what stands before the path
  } cases[] = {
      {"https://chat.example", "https://chat.example"},
      {"https://chat.example/", "https://chat.example/"},
      {"http://127.0.0.1:8080", "http://127.0.0.1:8080"},
      {"http://[::1]:8080/base", "http://[::1]:8080/base"},
      {"HTTPS://chat.example", "HTTPS://chat.example"},
      {"https://客服.example", "https://%E5%AE%A2%E6%9C%8D.example"},
      {"", ""},
      {"https://a?x=1", "https://a?x=1"},
      {"https://a/%41", "https://a/%41"},
      {"https://a b", refused},
      {"http://[::1", refused},
      {"https://a\xFF", refused},
  };
  for (const auto& [host, origin] : cases) {
    ChatManager::shared().instanceURL.reset();
    auto user = std::make_shared<UserMappingModel>();
    user->deviceId = "d";
    OVKFApi().startSession(host, "", "", user);
    const auto& url = ChatManager::shared().instanceURL;
    ASSERT_EQ(url.has_value(), origin != refused) << host;
    if (!url) continue;
    const auto& text = url->absoluteString();
    EXPECT_EQ(text.substr(0, text.find("/api/")), origin);
  }
}

}  // namespace
}  // namespace orivex::testing

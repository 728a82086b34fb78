#include <gtest/gtest.h>

#include "ChatPageAddress.h"

#include "orivex/models/UserMappingModel.h"

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

}  // namespace
}  // namespace orivex::testing

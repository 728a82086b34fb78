// The types for the authors of chat pages, against the records that they describe.

#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ChatPageAddress.h"
#include "ScriptMessageBridge.h"
#include "Tables.h"

#include "orivex/models/UserMappingModel.h"

namespace orivex {
namespace {

using Keys = std::vector<std::string>;

std::string contentsOf(const std::string& file) {
  std::ifstream stream(std::string(ORIVEX_SOURCE_DIR "/") + file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The keys of an interface, in order.
Keys typed(const std::string& interface) {
  static const auto types = contentsOf("page/orivex-page.d.ts");
  Keys keys;
  const auto start = types.find("  interface " + interface + " {");
  if (start == std::string::npos) return keys;
  const auto body = types.substr(start, types.find("\n  }", start) - start);
  const std::regex key("\n    ([A-Za-z0-9_]+)\\??:");
  for (std::sregex_iterator match(body.begin(), body.end(), key), end; match != end; ++match)
    keys.push_back((*match)[1]);
  return keys;
}

template <class Record>
Keys coded() {
  Keys keys;
  forEachField<Record>([&](const auto& field) { keys.emplace_back(field.key); });
  return keys;
}

TEST(PageTypes, HaveTheKeysOfTheRecords) {
  EXPECT_EQ(typed("TrackEvent"), coded<TrackModel>());
  EXPECT_EQ(typed("Shortcut"), coded<ShortcutsModel>());
  EXPECT_EQ(typed("Request"), coded<PostMessageModel>());
  EXPECT_EQ(typed("SelectedFile"), coded<UploadFileInfoModel>());
  EXPECT_EQ(typed("Environment"), coded<WebViewEnvModel>());
  EXPECT_EQ(typed("Message"), coded<MessageModel>());
  EXPECT_EQ(typed("MessageBody"), coded<MessageBody>());
  EXPECT_EQ(typed("CardField"), coded<MessageCustomFields>());
  EXPECT_EQ(typed("CardMenu"), coded<MessageCustomMenus>());
  EXPECT_EQ(typed("CardItem"), coded<MessageCustomItems>());
}

TEST(PageTypes, AndTheGuideNameEveryMessageAndKey) {
  auto messages = typed("Messages");
  EXPECT_EQ(messages, ScriptMessageBridge::messageNames(false));
  for (const auto& name : typed("OptionalMessages")) messages.push_back(name);
  EXPECT_EQ(messages, ScriptMessageBridge::messageNames(true));

  const auto guide = contentsOf("docs/page.md");
  for (const auto& keys :
       {messages, coded<PostMessageModel>(), coded<UploadFileInfoModel>(), coded<WebViewEnvModel>()}) {
    for (const auto& key : keys) EXPECT_NE(guide.find("| `" + key + "`"), std::string::npos) << key;
  }
}

// "<server>/path?key=…" of an address with such values.
std::string withoutValues(const std::string& address) {
  return std::regex_replace(address, std::regex("=[^&\n]*"), "=…");
}

TEST(PageTypes, TheGuideHasTheAddressOfThePage) {
  const auto guide = contentsOf("docs/page.md");
  const auto start = guide.find("\n```\n<server>") + 5;
  const UserMappingModel visitor;
  const ChatPageAddress address{"<server>", "", "", visitor, 0, 0, ""};
  EXPECT_EQ(withoutValues(guide.substr(start, guide.find("\n```", start) - start)), withoutValues(address.text()));
}

}  // namespace
}  // namespace orivex

#include "DeviceTest.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/platform/base/Log.h"

namespace orivex::testing {
namespace {

TEST(ColorTest, IsReadFromSixHexadecimalDigitsOnly) {
  const std::pair<std::string, Color> cases[] = {
      {"#ffffff", Color::white()},
      {"#336699", {0.2, 0.4, 0.6, 1}},
      {"#01fE80", {1 / 255.0, 254 / 255.0, 128 / 255.0, 1}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(OVKFApiHelper::color(text), expected) << text;
  for (const auto* text : {"", "#", "FFFFFF", "#FFF", "#GGGGGG", "#FFFFFG", "#FFFFFF0", "#FFFFFF ", "#-00001",
                           "#+00001", "# FFFFF", "0FFFFFF", "#FFFF 1"}) {
    EXPECT_EQ(OVKFApiHelper::color(text), Color::black()) << text;
  }
}

using OVKFApiHelperTest = DeviceTest;

TEST_F(OVKFApiHelperTest, OpensAddressesOutsideOfTheApplication) {
  device_.application().setOpenableSchemes({"https", "tel", "file"});
  const struct {
    std::optional<std::string> text;
    const char* opened;  // null: nothing
    Lines log;
  } cases[] = {
      {std::nullopt, nullptr, {}},
      {"https://a.example", "https://a.example", {R"("https://a.example")"}},
      {"https://a.example/你好?q=1",
       "https://a.example/%E4%BD%A0%E5%A5%BD?q=1",
       {R"("https://a.example/%E4%BD%A0%E5%A5%BD?q=1")"}},
      {"https://a.example/a b", "https://a.example/a%20b", {R"("https://a.example/a%20b")"}},
      {" https://a.example", nullptr, {R"("无效的URL")"}},
      {"https://a.example/%20 x", "https://a.example/%2520%20x", {R"("https://a.example/%2520%20x")"}},
      {"https://a.example/é", "https://a.example/%C3%A9", {R"("https://a.example/%C3%A9")"}},
      {"TEL:123", "TEL:123", {R"("TEL:123")"}},
      {"weixin://pay", nullptr, {R"("weixin://pay")", R"("地址无法打开")"}},
      {"你好", nullptr, {R"("%E4%BD%A0%E5%A5%BD")", R"("地址无法打开")"}},
      {"https://a.example/?ids[]=1&q=a|b",
       "https://a.example/?ids%5B%5D=1&q=a%7Cb",
       {R"("https://a.example/?ids%5B%5D=1&q=a%7Cb")"}},
      {"https://a.example/" + std::string(65536, 'x'), nullptr, {R"("无效的URL")"}},
      {"a \xFF", nullptr, {R"("无效的URL")"}},
  };
  std::size_t opened = 0;
  for (const auto& row : cases) {
    SCOPED_TRACE(row.text.value_or("absent"));
    OVKFApiHelper::openExternalURL(row.text);
    EXPECT_EQ(log_.take(), row.log);
    const auto& urls = device_.application().openedUrls();
    ASSERT_EQ(urls.size(), opened += row.opened ? 1 : 0);
    if (row.opened) {
      EXPECT_EQ(urls.back().absoluteString(), row.opened);
    }
  }
  EXPECT_TRUE(device_.progressOverlay().history().empty());
}

TEST_F(OVKFApiHelperTest, NamesTheHostAsItsBundleDoes) {
  using Value = std::optional<InfoValue>;
  const struct {
    Value displayName;
    Value name;
    std::string expected;
  } cases[] = {
      {"商城", "Shop", "商城"},
      {std::nullopt, "Shop", "Shop"},
      {1.0, "Shop", "Shop"},
      {"", "Shop", ""},
      {std::nullopt, true, "Unknown App Name"},
      {std::nullopt, std::nullopt, "Unknown App Name"},
  };
  auto& bundle = device_.mainBundle();
  for (const auto& row : cases) {
    bundle.setInfo("CFBundleDisplayName", row.displayName);
    bundle.setInfo("CFBundleName", row.name);
    EXPECT_EQ(OVKFApiHelper::appDisplayName(), row.expected);
  }
  bundle.setInfoDictionary(std::nullopt);
  EXPECT_EQ(OVKFApiHelper::appDisplayName(), "Unknown App Name");
}

TEST_F(OVKFApiHelperTest, NamesItselfToServersWithoutBlanks) {
  const auto machine = OVKFApiHelper::deviceModel();
  EXPECT_FALSE(machine.empty());
  EXPECT_EQ(OVKFApiHelper::userAgent(), "KepChatSDK/iOS/1.2.3.4(" + machine + ")");
  EXPECT_EQ(OVKFApiHelper::userAgent().find_first_of(" \t\n\0"), std::string::npos);
}

}  // namespace
}  // namespace orivex::testing

#pragma once

#include <fstream>
#include <iterator>
#include <regex>

#include "contract/Fixture.h"

#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/Device.h"
#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ports/UserDefaults.h"

/// The ports that only look something up: Bundle, UserDefaults and Device.
namespace orivex::contract {

template <BundleFixture Fixture>
class BundleContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(BundleContract);

TYPED_TEST_P(BundleContract, AResourceIsFoundByNameAndTypeTogether) {
  const Bundle& bundle = this->fixture_.bundleWith({{"page.html", "<p>é"}, {"tool.min.js", "1;"}});
  const struct {
    const char* name;
    const char* type;
    const char* contents;
  } rows[] = {
      {"page", "html", "<p>é"},    {"tool.min", "js", "1;"}, {"page", "js", nullptr},
      {"absent", "html", nullptr}, {"pag", "html", nullptr},
  };
  for (const auto& row : rows) {
    const auto path = bundle.pathForResource(row.name, row.type);
    ASSERT_EQ(path.has_value(), row.contents != nullptr) << row.name << '.' << row.type;
    if (!path) continue;
    std::ifstream file(*path, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), row.contents);
  }
}

TYPED_TEST_P(BundleContract, AMissingBundleHasNothing) {
  const Bundle& bundle = this->fixture_.missingBundle();
  EXPECT_FALSE(bundle.infoDictionary());
  EXPECT_FALSE(bundle.pathForResource("skeleton", "html"));
}

REGISTER_TYPED_TEST_SUITE_P(BundleContract, AResourceIsFoundByNameAndTypeTogether, AMissingBundleHasNothing);

template <SettingsFixture Fixture>
class UserDefaultsContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, ASettingReadsBackAsItWasAndIsNothingWhenAbsent) {
  const std::string text = "两行\\ \"及\" = 表情😀";
  const UserDefaults& defaults =
      this->fixture_.userDefaultsWith({{"on", true}, {"off", false}, {"text", text}, {"empty", std::string()}});
  EXPECT_TRUE(defaults.boolForKey("on"));
  EXPECT_FALSE(defaults.boolForKey("off"));
  EXPECT_FALSE(defaults.boolForKey("text")) << "it is no boolean";
  EXPECT_FALSE(defaults.boolForKey("absent"));
  EXPECT_EQ(defaults.stringForKey("text"), text);
  EXPECT_EQ(defaults.stringForKey("empty"), "");
  EXPECT_EQ(defaults.stringForKey("absent"), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(UserDefaultsContract, ASettingReadsBackAsItWasAndIsNothingWhenAbsent);

template <DeviceFixture Fixture>
class DeviceContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(DeviceContract);

TYPED_TEST_P(DeviceContract, TheIdentifierIsAnUpperCaseUuidThatStaysTheSame) {
  const Device& device = this->fixture_.platform().device;
  const auto identifier = device.identifierForVendor();
  if (!identifier) GTEST_SKIP() << "this system gives no identifier";
  const std::regex uuid("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
  EXPECT_TRUE(std::regex_match(*identifier, uuid)) << *identifier;
  EXPECT_EQ(device.identifierForVendor(), identifier);
}

REGISTER_TYPED_TEST_SUITE_P(DeviceContract, TheIdentifierIsAnUpperCaseUuidThatStaysTheSame);

template <DeviceFixture Fixture>
class FileManagerContract : public Suite<Fixture> {};
TYPED_TEST_SUITE_P(FileManagerContract);

TYPED_TEST_P(FileManagerContract, HasOneFolderForDocumentsAndRemovesOnlyFilesOfThisDevice) {
  FileManager& files = this->fixture_.platform().fileManager;
  const auto folder = files.documentDirectory();
  ASSERT_TRUE(folder);
  const auto path = folder->filePath();
  ASSERT_TRUE(path);
  EXPECT_TRUE(path->starts_with('/') && !path->ends_with('/')) << *path;
  EXPECT_EQ(files.documentDirectory(), folder);
  EXPECT_TRUE(files.removeItem(*Url::parse("https://a.example/a.wav")));
}

REGISTER_TYPED_TEST_SUITE_P(FileManagerContract, HasOneFolderForDocumentsAndRemovesOnlyFilesOfThisDevice);

}  // namespace orivex::contract

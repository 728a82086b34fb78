#include <cstdlib>

#include "DeviceTest.h"

#include "orivex/media/DeviceIdentifier.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex::testing {
namespace {

void askForTheIdentifier() {
  VirtualDevice device;
  device.identity().setIdentifierForVendor(std::nullopt);
  EXPECT_EQ(deviceIdentifier(), "");
  device.identity().setIdentifierForVendor("6F1D2C3B-4A59-4E68-8B77-90A1B2C3D4E5");
  EXPECT_EQ(deviceIdentifier(), "6f1d2c3b-4a59-4e68-8b77-90a1b2c3d4e5");
  device.identity().setIdentifierForVendor("00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(deviceIdentifier(), "6f1d2c3b-4a59-4e68-8b77-90a1b2c3d4e5");
  std::exit(::testing::Test::HasFailure() ? 1 : 0);
}

TEST(DeviceIdentifier, IsAskedForUntilThereIsOne) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process of its own: the identifier lives as long as that
  EXPECT_EXIT(askForTheIdentifier(), ::testing::ExitedWithCode(0), "");
}

class VersionTest : public DeviceTest {};

TEST_F(VersionTest, ComesFromTheComponentsBundleAndNotTheHosts) {
  device_.componentBundle().setInfoDictionary(
      InfoDictionary{{"CFBundleShortVersionString", "2.1.0"}, {"CFBundleVersion", "15"}});
  EXPECT_EQ(OVKFApi::getSDKVersion(true), "2.1.0");
  EXPECT_EQ(OVKFApi::getSDKVersion(false), "2.1.0.15");
}

TEST_F(VersionTest, IsEmptyWithoutInformation) {
  device_.componentBundle().setMissing(true);
  EXPECT_EQ(OVKFApi::getSDKVersion(true), "");
  EXPECT_EQ(OVKFApi::getSDKVersion(false), "");
  device_.componentBundle().setMissing(false);
  device_.componentBundle().setInfoDictionary(std::nullopt);
  EXPECT_EQ(OVKFApi::getSDKVersion(false), "");
}

TEST_F(VersionTest, StopsTheProcessWhenAKeyIsMissingOrNoText) {
  auto& bundle = device_.componentBundle();
  bundle.setInfo("CFBundleVersion", std::nullopt);
  EXPECT_EQ(OVKFApi::getSDKVersion(true), "1.2.3");
  EXPECT_DEATH(OVKFApi::getSDKVersion(false), "Fatal error: .*CFBundleVersion");
  bundle.setInfo("CFBundleVersion", 4.0);
  EXPECT_DEATH(OVKFApi::getSDKVersion(false), "Fatal error: .*CFBundleVersion");
  bundle.setInfo("CFBundleShortVersionString", std::nullopt);
  EXPECT_DEATH(OVKFApi::getSDKVersion(true), "Fatal error: .*CFBundleShortVersionString");
}

}  // namespace
}  // namespace orivex::testing

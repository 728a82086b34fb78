#include <tuple>

#include "DeviceTest.h"

#include "orivex/media/ChatManager.h"
#include "orivex/media/OVKFApiHelper.h"
#include "orivex/models/MessageBody.h"
#include "orivex/models/UserMappingModel.h"
#include "orivex/sdk/OVKFApi.h"
#include "orivex/session/OVKFApiManager.h"
#include "orivex/voice/RecordManager.h"
#include "orivex/voice/VoiceManager.h"

namespace orivex::testing {
namespace {

TEST(DeviceIdentifier, IsAskedForUntilThereIsOne) {
  VirtualDevice device;
  device.identity().setIdentifierForVendor(std::nullopt);
  EXPECT_EQ(OVKFApiHelper::deviceIdentifier(), "");
  device.identity().setIdentifierForVendor("6F1D2C3B-4A59-4E68-8B77-90A1B2C3D4E5");
  EXPECT_EQ(OVKFApiHelper::deviceIdentifier(), "6f1d2c3b-4a59-4e68-8b77-90a1b2c3d4e5");
  device.identity().setIdentifierForVendor("00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(OVKFApiHelper::deviceIdentifier(), "6f1d2c3b-4a59-4e68-8b77-90a1b2c3d4e5");
}

// What a session and its screens leave behind in a process.
auto leftBehind() {
  auto& store = OVKFApiManager::shared();
  const auto& address = ChatManager::shared().instanceURL;
  return std::tuple(store.host, store.user, store.guestId, store.videoSize, store.elements.size(),
                    address ? address->absoluteString() : "", VoiceManager::shared().isStop,
                    RecordManager::shared().recordingView()->isHidden(), OVKFApiHelper::deviceIdentifier());
}

TEST(VirtualDeviceTest, IsAFreshProcessAndGivesBackTheOneBefore) {
  const VirtualDevice device;
  const auto fresh = leftBehind();
  OVKFApi screen;
  screen.startSession("https://chat.example", "entry", "key", std::make_shared<UserMappingModel>());
  screen.sendMessage(1, std::make_shared<MessageBody>());
  OVKFApiManager::shared().guestId = "guest";
  OVKFApiManager::shared().videoSize = 1;
  VoiceManager::shared().isStop = true;
  RecordManager::shared().recordingView()->setHidden(false);
  const auto used = leftBehind();
  {
    VirtualDevice next;
    EXPECT_EQ(leftBehind(), fresh);
  }
  {
    VirtualDevice other;
    other.identity().setIdentifierForVendor("other");
    EXPECT_EQ(OVKFApiHelper::deviceIdentifier(), "other");
  }
  EXPECT_EQ(leftBehind(), used);
}

using VersionTest = DeviceTest;

TEST_F(VersionTest, ComesFromTheComponentsBundleAndIsEmptyWithoutOne) {
  device_.componentBundle().setInfoDictionary(
      InfoDictionary{{"CFBundleShortVersionString", "2.1.0"}, {"CFBundleVersion", "15"}});
  EXPECT_EQ(OVKFApi::getSDKVersion(true), "2.1.0");
  EXPECT_EQ(OVKFApi::getSDKVersion(false), "2.1.0.15");
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

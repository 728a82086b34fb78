// A host's own test: a session starts on the virtual device, and the screen is ready for its page.
#include <iostream>
#include <memory>

#include "orivex/sdk/OrivexSDK.h"
#include "orivex/testing/VirtualDevice.h"

int main() {
  orivex::testing::VirtualDevice& device = orivex::testing::install();
  device.componentBundle().setInfo("CFBundleShortVersionString", "9.8.7");

  const auto visitor = std::make_shared<orivex::UserMappingModel>();
  const auto chat = std::make_shared<orivex::OVKFApi>();
  bool started = false;
  chat->startSession("https://chat.example", "entry", "key", visitor, [&] { started = true; });

  const std::string version = orivex::OVKFApi::getSDKVersion(true);
  std::cout << "version " << version << ", device " << visitor->deviceId.value_or("unknown") << '\n';
  return started && version == "9.8.7" && visitor->deviceId ? 0 : 1;
}

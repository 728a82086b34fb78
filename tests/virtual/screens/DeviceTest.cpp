#include "DeviceTest.h"

#include "orivex/platform/base/Text.h"

namespace orivex::testing {

std::vector<std::string> DeviceTest::overlayStory(VirtualDevice& device) {
  std::vector<std::string> story;
  for (const auto& [time, event, panel] : device.progressOverlay().history()) {
    const auto* const verb = event == VirtualProgressOverlay::Event::shown ? " shows " : " hides ";
    story.push_back(doubleText(time) + verb + panel.status);
  }
  return story;
}

}  // namespace orivex::testing

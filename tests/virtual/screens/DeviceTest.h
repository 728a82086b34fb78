#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/LogLines.h"

#include "orivex/platform/base/Text.h"
#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

/// A test on a virtual device of its own, at time 0.
class DeviceTest : public ::testing::Test {
 protected:
  /// What the overlay of a device showed so far, each change with its time: "10.0 shows text", "12.0 hides text". One
  /// that takes the place of another shows without a hiding in between.
  static std::vector<std::string> overlayStory(VirtualDevice& device) {
    std::vector<std::string> story;
    for (const auto& [time, event, panel] : device.progressOverlay().history()) {
      const auto* const verb = event == VirtualProgressOverlay::Event::shown ? " shows " : " hides ";
      story.push_back(doubleText(time) + verb + panel.status);
    }
    return story;
  }
  std::vector<std::string> overlayStory() { return overlayStory(device_); }

  LogLines log_;
  VirtualDevice device_;
};

using Lines = std::vector<std::string>;

}  // namespace orivex::testing

#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

/// The debug log for as long as this lives.
class LogLines {
 public:
  LogLines();
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;
  ~LogLines();

  /// The lines since the last call.
  std::vector<std::string> take();

  /// Those of them that begin with `prefix`; drops the others.
  std::vector<std::string> take(std::string_view prefix);

 private:
  bool wasEnabled_;
  std::vector<std::string> lines_;
};

/// A test on a virtual device of its own, at time 0.
class DeviceTest : public ::testing::Test {
 protected:
  /// What the overlay of a device showed so far, each change with its time: "10.0 shows text", "12.0 hides text". One
  /// that takes the place of another shows without a hiding in between.
  static std::vector<std::string> overlayStory(VirtualDevice& device);
  std::vector<std::string> overlayStory() { return overlayStory(device_); }

  LogLines log_;
  VirtualDevice device_;
};

using Lines = std::vector<std::string>;

}  // namespace orivex::testing

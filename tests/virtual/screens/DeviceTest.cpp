#include "DeviceTest.h"

#include <utility>

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"

namespace orivex::testing {

LogLines::LogLines() : wasEnabled_(log::isEnabled()) {
  log::setEnabled(true);
  log::setSink([this](std::string_view line) { lines_.emplace_back(line); });
}

LogLines::~LogLines() {
  log::setSink({});
  log::setEnabled(wasEnabled_);
}

std::vector<std::string> LogLines::take() {
  return std::exchange(lines_, {});
}

std::vector<std::string> LogLines::take(std::string_view prefix) {
  auto lines = take();
  std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(prefix); });
  return lines;
}

std::vector<std::string> DeviceTest::overlayStory(VirtualDevice& device) {
  std::vector<std::string> story;
  for (const auto& [time, event, panel] : device.progressOverlay().history()) {
    const auto* const verb = event == VirtualProgressOverlay::Event::shown ? " shows " : " hides ";
    story.push_back(doubleText(time) + verb + panel.status);
  }
  return story;
}

}  // namespace orivex::testing

#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

/// Collects the debug log for as long as it lives.
class LogLines {
 public:
  LogLines() : wasEnabled_(log::isEnabled()) {
    log::setEnabled(true);
    log::setSink([this](std::string_view line) { lines_.emplace_back(line); });
  }
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;
  ~LogLines() {
    log::setSink({});
    log::setEnabled(wasEnabled_);
  }

  const std::vector<std::string>& get() const { return lines_; }

  /// How many lines contain this.
  int count(const std::string& part) const {
    return static_cast<int>(std::count_if(
        lines_.begin(), lines_.end(), [&](const std::string& line) { return line.find(part) != std::string::npos; }));
  }
  bool has(const std::string& part) const { return count(part) > 0; }

 private:
  bool wasEnabled_;
  std::vector<std::string> lines_;
};

}  // namespace orivex::gtk

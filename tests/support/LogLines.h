#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "orivex/platform/base/Log.h"

namespace orivex {

/// Collects the debug log for as long as it lives, also of other threads.
class LogLines {
 public:
  LogLines() : wasEnabled_(log::isEnabled()) {
    log::setEnabled(true);
    log::setSink([this](std::string_view line) {
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(line);
    });
  }
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;
  ~LogLines() {
    log::setSink({});
    log::setEnabled(wasEnabled_);
  }

  std::vector<std::string> get() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

  /// How many lines contain this.
  int count(const std::string& part) const {
    const auto lines = get();
    return static_cast<int>(std::count_if(
        lines.begin(), lines.end(), [&](const std::string& line) { return line.find(part) != std::string::npos; }));
  }
  bool has(const std::string& part) const { return count(part) > 0; }

  /// The lines since the last call that begin with `prefix`; drops the others.
  std::vector<std::string> take(std::string_view prefix = "") {
    const std::lock_guard lock(mutex_);
    auto lines = std::exchange(lines_, {});
    std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(prefix); });
    return lines;
  }

 private:
  bool wasEnabled_;
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace orivex

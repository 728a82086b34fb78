#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

/// The debug log for as long as this lives, also of other threads.
class SharedLog {
 public:
  SharedLog() {
    log::setEnabled(true);
    log::setSink([this](std::string_view line) {
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(line);
    });
  }
  SharedLog(const SharedLog&) = delete;
  SharedLog& operator=(const SharedLog&) = delete;
  ~SharedLog() { log::setSink({}); }

  std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace orivex::gtk

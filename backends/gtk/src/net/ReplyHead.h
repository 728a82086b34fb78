#pragma once

#include <string>
#include <string_view>

namespace orivex::gtk {

/// What counts of a reply's head, line by line as it comes. 1xx replies only announce the final one.
class ReplyHead {
 public:
  void take(std::string_view line);

  /// Of the status line that came last, 1xx included; 0 before the first.
  int status() const { return status_; }
  bool isFinal() const { return status_ >= 200; }

  /// Whether the final reply's head is there as a whole.
  bool hasEnded() const { return hasEnded_; }

  /// Where the reply says to go, as it says it; empty when it does not.
  const std::string& location() const { return location_; }

 private:
  int status_ = 0;
  bool hasEnded_ = false;
  std::string location_;
};

}  // namespace orivex::gtk

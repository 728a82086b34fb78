#pragma once

#include <optional>
#include <string>

#include "orivex/platform/base/Interface.h"

namespace orivex {

/// The machine under the application. Main thread.
class Device : public Interface {
 public:
  /// An identifier of this machine that is the same for every run and tells nothing about it elsewhere: a UUID as
  /// 36 characters in upper case. Nothing when the system gives none.
  virtual std::optional<std::string> identifierForVendor() const = 0;
};

}  // namespace orivex

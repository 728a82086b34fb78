#pragma once

#include <optional>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

/// Folders and files of the device. Main thread.
class FileManager : public Interface {
 public:
  /// The component's folder for documents of this application, which no other application and no visitor looks into. It
  /// exists. Nothing when there is no such folder at all.
  virtual std::optional<Url> documentDirectory() = 0;

  /// Removes one file. Nothing on success, else why not.
  virtual std::optional<Failure> removeItem(const Url& file) = 0;
};

}  // namespace orivex

#pragma once

#include <string>

#include "orivex/platform/ports/FileManager.h"

namespace orivex::gtk {

/// The folders of the XDG base directory standard and of xdg-user-dirs.
class XdgFileManager final : public FileManager {
 public:
  /// `applicationId` names the application's own folder in $XDG_DATA_HOME; must not be empty.
  explicit XdgFileManager(std::string applicationId) : applicationId_(std::move(applicationId)) {}

  /// The documents folder; the application's data folder when there is none or it cannot be written to; the folder for
  /// temporary files when there is neither, so that there always is one.
  std::optional<Url> documentDirectory() override;

  std::optional<Failure> removeItem(const Url& file) override;

 private:
  const std::string applicationId_;
};

}  // namespace orivex::gtk

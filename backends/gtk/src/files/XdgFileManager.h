#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "orivex/platform/ports/FileManager.h"

namespace orivex::gtk {

/// The folders of the XDG base directory standard.
class XdgFileManager final : public FileManager {
 public:
  /// `applicationId` names the application's folder in $XDG_DATA_HOME/orivex-sdk; must not be empty.
  explicit XdgFileManager(std::string applicationId) : applicationId_(std::move(applicationId)) {}

  /// That folder, for its owner alone, or the folder for temporary files where it cannot be written to, so that there
  /// always is one.
  std::optional<Url> documentDirectory() override;

  std::optional<Failure> removeItem(const Url& file) override;

 private:
  const std::string applicationId_;
};

/// Removes the files of `folder` whose names end like this and that nobody has written to for a day: what a process
/// that was killed has left of its visitor. Any thread; a failure leaves the file.
void removeLeftOvers(const std::filesystem::path& folder, std::string_view ending);

}  // namespace orivex::gtk

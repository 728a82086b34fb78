#pragma once

#include <filesystem>
#include <string>

#include "orivex/platform/ports/Bundle.h"

namespace orivex::gtk {

/// A bundle as a folder: its information in "Info.json", an object of texts, numbers and booleans, and its resources
/// beside that. A missing folder has no information and no resources.
class FolderBundle final : public Bundle {
 public:
  explicit FolderBundle(std::filesystem::path folder);

  /// The component's bundle: the folder "OrivexSDK.bundle" beside the library or program that holds
  /// `addressInLibrary`.
  static FolderBundle besideLibrary(const void* addressInLibrary);

  const std::optional<InfoDictionary>& infoDictionary() const override { return information_; }
  /// Path of the entry `name`, whether or not it exists.
  std::string pathOf(std::string_view name) const { return (folder_ / name).string(); }

  std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const override;

 private:
  std::filesystem::path folder_;
  std::optional<InfoDictionary> information_;
};

}  // namespace orivex::gtk

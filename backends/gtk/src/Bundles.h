#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

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

/// What the desktop knows of the host application. "CFBundleDisplayName" is the name in the visitor's language from the
/// desktop entry of the application's identifier (without one: of the program's name), or what the host gave
/// g_set_application_name(); "CFBundleName" is the program's name and "CFBundleIdentifier" the identifier. What is not
/// known is absent. There are no resources.
class DesktopEntryBundle final : public Bundle {
 public:
  /// `applicationId` as in "org.example.Shop"; empty for a host without one.
  explicit DesktopEntryBundle(std::string applicationId) : applicationId_(std::move(applicationId)) {}

  /// Gathered at the first question, when the host has long named itself.
  const std::optional<InfoDictionary>& infoDictionary() const override;

  std::optional<std::string> pathForResource(std::string_view, std::string_view) const override { return std::nullopt; }

 private:
  InfoDictionary gather() const;

  std::string applicationId_;
  mutable std::optional<InfoDictionary> information_;
};

}  // namespace orivex::gtk

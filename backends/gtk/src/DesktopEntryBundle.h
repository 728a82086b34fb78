#pragma once

#include <string>

#include "orivex/platform/ports/Bundle.h"

namespace orivex::gtk {

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

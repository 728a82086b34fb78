#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "orivex/platform/ports/Bundle.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// A bundle with what a test puts into it. Resources are real files in a folder of their own under the system's
/// temporary folder, which goes with the bundle.
class VirtualBundle final : public Bundle {
 public:
  VirtualBundle(const MainQueue& queue, InfoDictionary info);
  ~VirtualBundle() override;

  const std::optional<InfoDictionary>& infoDictionary() const override;
  std::optional<std::string> pathForResource(std::string_view name, std::string_view type) const override;

  /// Absent: the bundle carries no information.
  void setInfoDictionary(std::optional<InfoDictionary> info) { info_ = std::move(info); }

  /// Sets one value, or takes it away.
  void setInfo(std::string_view key, std::optional<InfoValue> value);

  /// Writes the file "name.type" and returns its path.
  std::string addResource(std::string_view name, std::string_view type, std::string_view contents);

  /// Adds a "name.type" that is found but cannot be read as a file.
  std::string addUnreadableResource(std::string_view name, std::string_view type);

  void removeResource(std::string_view name, std::string_view type);

  /// A missing bundle has neither information nor resources; what was put into it comes back with it.
  void setMissing(bool missing) { missing_ = missing; }

  /// The folder of the resources.
  const std::filesystem::path& folder() const { return folder_; }

 private:
  const MainQueue& queue_;
  std::filesystem::path folder_;
  std::optional<InfoDictionary> info_;
  bool missing_ = false;
};

}  // namespace orivex::testing

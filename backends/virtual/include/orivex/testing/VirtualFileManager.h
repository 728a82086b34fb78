#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "orivex/platform/ports/FileManager.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// Folders that are only named; what was removed is remembered.
class VirtualFileManager final : public FileManager {
 public:
  explicit VirtualFileManager(const MainQueue& queue) : queue_(queue) {}

  std::optional<Url> documentDirectory() override;
  std::optional<Failure> removeItem(const Url& file) override;

  /// At first "/virtual/Documents"; absent: there is no folder to write to.
  void setDocumentDirectory(std::optional<std::string> path) { documentDirectory_ = std::move(path); }

  /// Removing files fails from now on, for this reason; empty: it succeeds.
  void failRemoval(std::string reason) { removalFailure_ = std::move(reason); }

  /// Paths, in the order of removal.
  const std::vector<std::string>& removed() const { return removed_; }
  void forgetRemoved() { removed_.clear(); }

 private:
  const MainQueue& queue_;
  std::optional<std::string> documentDirectory_ = "/virtual/Documents";
  std::string removalFailure_;
  std::vector<std::string> removed_;
};

}  // namespace orivex::testing

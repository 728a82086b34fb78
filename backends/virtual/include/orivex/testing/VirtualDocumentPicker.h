#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "orivex/platform/base/Subscription.h"
#include "orivex/platform/ports/DocumentPicker.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::testing {

/// A chooser that a test answers, with files that the test has made: as on a real device, nothing else is opened.
class VirtualDocumentPicker final : public DocumentPicker {
 public:
  explicit VirtualDocumentPicker(MainQueue& queue) : queue_(queue) {}

  void present(const DocumentPickerOptions& options, View& view, Once<void(DocumentPickerOutcome)> completion) override;
  std::variant<std::unique_ptr<FileAccess>, Failure> startAccess(const Url& file) override;

  /// Of the open chooser; nothing when none is open.
  const std::optional<DocumentPickerOptions>& presented() const { return presented_; }

  /// The visitor's answer: closes the chooser and calls back from the queue.
  void pick(const std::vector<std::string>& paths);
  void cancel();

  /// Access to `path` is refused from now on.
  void refuse(const std::string& path) { refused_.insert(path); }

  /// How many accesses have been started and not ended.
  int openAccesses() const { return *openAccesses_; }

 private:
  void answer(DocumentPickerOutcome outcome);

  MainQueue& queue_;
  std::optional<DocumentPickerOptions> presented_;
  Once<void(DocumentPickerOutcome)> completion_;
  std::set<std::string> refused_;
  std::shared_ptr<int> openAccesses_ = std::make_shared<int>(0);
  Subscription leaves_;
};

}  // namespace orivex::testing

#include "orivex/testing/VirtualDocumentPicker.h"

#include <filesystem>
#include <utility>

#include "ThreadCheck.h"

#include "orivex/platform/ui/View.h"

namespace orivex::testing {
namespace {

class CountedAccess final : public FileAccess {
 public:
  explicit CountedAccess(std::shared_ptr<int> open) : open_(std::move(open)) { ++*open_; }
  ~CountedAccess() override { --*open_; }

 private:
  std::shared_ptr<int> open_;
};

}  // namespace

void VirtualDocumentPicker::present(const DocumentPickerOptions& options, View& view,
                                    Once<void(DocumentPickerOutcome)> completion) {
  requireMainThread(queue_, "DocumentPicker::present");
  if (presented_) {
    queue_.async([completion = std::move(completion)]() mutable { std::move(completion)(PickingCancelled{}); });
    return;
  }
  presented_ = options;
  completion_ = std::move(completion);
  leaves_ = view.observeLeaving([this] {
    presented_.reset();
    completion_ = nullptr;
  });
}

std::variant<std::unique_ptr<FileAccess>, Failure> VirtualDocumentPicker::startAccess(const Url& file) {
  requireMainThread(queue_, "DocumentPicker::startAccess");
  const auto path = file.filePath().value_or("");
  if (refused_.contains(path)) return Failure{"Permission denied"};
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return Failure{error ? error.message() : "Invalid argument"};
  return std::make_unique<CountedAccess>(openAccesses_);
}

void VirtualDocumentPicker::pick(const std::vector<std::string>& paths) {
  PickedDocuments picked;
  for (const auto& path : paths) picked.files.push_back(Url::fromFilePath(path));
  answer(std::move(picked));
}

void VirtualDocumentPicker::cancel() {
  answer(PickingCancelled{});
}

void VirtualDocumentPicker::answer(DocumentPickerOutcome outcome) {
  presented_.reset();
  queue_.async([completion = std::move(completion_), outcome = std::move(outcome)]() mutable {
    std::move(completion)(std::move(outcome));
  });
}

}  // namespace orivex::testing

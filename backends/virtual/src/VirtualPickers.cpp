#include "orivex/testing/VirtualPickers.h"

#include <filesystem>
#include <system_error>

#include "orivex/testing/VirtualMainQueue.h"

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

void VirtualCamera::present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) {
  requireMainThread(queue_, "Camera::present");
  if (!presented()) screen_.open(options, view, std::move(completion));
}

void VirtualPhotoLibrary::show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) {
  requireMainThread(queue_, "PhotoLibrary::show");
  if (!shown()) sheet_.open(options, view, std::move(selected));
}

void VirtualDocumentPicker::present(const DocumentPickerOptions& options, View& view,
                                    Once<void(DocumentPickerOutcome)> completion) {
  requireMainThread(queue_, "DocumentPicker::present");
  if (!presented()) return chooser_.open(options, view, std::move(completion));
  queue_.async([completion = std::move(completion)]() mutable { std::move(completion)(PickingCancelled{}); });
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
  chooser_.answer(std::move(picked));
}

bool VirtualDocumentInteraction::presentOptionsMenu(const Url& file, const Rect& rect, View& view) {
  requireMainThread(queue_, "DocumentInteraction::presentOptionsMenu");
  if (!applications_) return false;
  menus_.push_back({file.absoluteString(), rect});
  open_ = true;
  leaves_ = view.observeLeaving([this] { open_ = false; });
  return true;
}

}  // namespace orivex::testing

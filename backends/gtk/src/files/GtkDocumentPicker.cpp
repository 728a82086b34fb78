#include "GtkDocumentPicker.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../ui/GtkApplicationPort.h"
#include "DocumentFilter.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {
namespace {

using Completion = Once<void(DocumentPickerOutcome)>;

/// Holds a file open: as long as one does, a document that the desktop lent to a sandbox stays in reach, and a disk
/// with it cannot be taken away.
class OpenFile final : public FileAccess {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() override { close(descriptor_); }

 private:
  const int descriptor_;
};

GRef<GFile> documentsFolder() {
  const char* const path = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
  return path ? GRef<GFile>::adopt(g_file_new_for_path(path)) : nullptr;
}

void answerLater(MainQueue& queue, Completion completion, DocumentPickerOutcome outcome) {
  queue.async([completion = std::move(completion), outcome = std::move(outcome)]() mutable {
    std::move(completion)(std::move(outcome));
  });
}

}  // namespace

void GtkDocumentPicker::present(const DocumentPickerOptions& options, View& view, Completion completion) {
  if (dialog_) {
    dialog_->bringToFront();
    answerLater(mainQueue_, std::move(completion), PickingCancelled{});
    return;
  }
  auto* const host = application_.find(view);
  if (!host) return log::print("The file chooser needs a screen in a window to open over.");
  completion_ = std::move(completion);
  // The chooser would greet the visitor with an error about a folder that has gone.
  if (!folder_ || !g_file_query_exists(folder_.get(), nullptr)) folder_ = documentsFolder();
  dialog_ = std::make_unique<FileDialog>(
      host->gtkWindow(),
      FileDialog::Options{
          .filters = documentFilters(options.mimeTypes), .folder = folder_.get(), .multiple = options.multiple},
      [this](const FileDialog::Files& files) { answered(files); });
  leaves_ = view.observeLeaving([this] {
    dialog_ = nullptr;
    completion_ = nullptr;
  });
}

void GtkDocumentPicker::answered(const FileDialog::Files& files) {
  const auto ended = std::move(dialog_);
  if (files.empty()) return answerLater(mainQueue_, std::move(completion_), PickingCancelled{});
  if (auto folder = GRef<GFile>::adopt(g_file_get_parent(files.front().get()))) folder_ = std::move(folder);
  PickedDocuments picked;
  for (const auto& path : FileDialog::pathsOf(files)) picked.files.push_back(Url::fromFilePath(path));
  answerLater(mainQueue_, std::move(completion_), std::move(picked));
}

std::variant<std::unique_ptr<FileAccess>, Failure> GtkDocumentPicker::startAccess(const Url& file) {
  const auto path = file.filePath();
  if (!path) return Failure{g_strerror(EINVAL)};
  // Without waiting for the other end of a pipe.
  const int descriptor = ::open(path->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return Failure{g_strerror(errno)};
  std::unique_ptr<FileAccess> access = std::make_unique<OpenFile>(descriptor);
  struct stat status {};
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return access;
  return Failure{g_strerror(S_ISDIR(status.st_mode) ? EISDIR : EINVAL)};
}

}  // namespace orivex::gtk

#include "GtkDocumentPicker.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../glib/GMemory.h"
#include "../ui/GtkApplicationPort.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
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

// More names than these make the chooser's button unreadable.
constexpr std::size_t mostNames = 3;

struct Kind {
  std::string_view prefix;  // of a MIME type
  const char* name;
};

// What visitors call the files that they usually send; the first match counts.
constexpr Kind kinds[] = {
    {"image/", trLater("图片")},
    {"video/", trLater("视频")},
    {"audio/", trLater("音频")},
    {"text/", trLater("文本")},
    {"application/pdf", "PDF"},
    {"application/msword", trLater("Word 文档")},
    {"application/vnd.openxmlformats-officedocument.wordprocessingml", trLater("Word 文档")},
    {"application/vnd.ms-excel", trLater("Excel 表格")},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml", trLater("Excel 表格")},
    {"application/vnd.ms-powerpoint", trLater("PPT 演示文稿")},
    {"application/vnd.openxmlformats-officedocument.presentationml", trLater("PPT 演示文稿")},
    {"application/zip", trLater("压缩包")},
    {"application/x-rar", trLater("压缩包")},
    {"application/vnd.rar", trLater("压缩包")},
    {"application/x-7z-compressed", trLater("压缩包")},
};

std::string lowerCase(const std::string& text) {
  return GCharPtr(g_ascii_strdown(text.c_str(), -1)).get();
}

bool isMimeType(const std::string& text) {
  const auto slash = text.find('/');
  return slash != std::string::npos && slash > 0 && slash + 1 < text.size() && text[0] != '*' &&
         text.find_first_of(" ,;") == std::string::npos;
}

std::string nameOf(const std::string& mimeType) {
  const auto* const kind = std::find_if(std::begin(kinds), std::end(kinds),
                                        [&](const Kind& candidate) { return mimeType.starts_with(candidate.prefix); });
  if (kind != std::end(kinds)) return tr(kind->name);
  const GCharPtr description(g_content_type_get_description(mimeType.c_str()));
  return description ? description.get() : mimeType;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), mostNames); ++i) text += (i > 0 ? tr("、") : "") + names[i];
  return names.size() > mostNames ? tr("%1等", {text}) : text;
}

}  // namespace

std::vector<GRef<GtkFileFilter>> documentFilters(const std::vector<std::string>& mimeTypes) {
  auto requested = GRef<GtkFileFilter>::sink(gtk_file_filter_new());
  std::vector<std::string> names;
  for (const auto& mimeType : mimeTypes) {
    const auto type = lowerCase(mimeType);
    if (type == "*/*") return {};
    if (!isMimeType(type)) continue;
    gtk_file_filter_add_mime_type(requested.get(), type.c_str());
    const auto name = nameOf(type);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  if (names.empty()) return {};
  gtk_file_filter_set_name(requested.get(), joined(names).c_str());
  auto all = GRef<GtkFileFilter>::sink(gtk_file_filter_new());
  gtk_file_filter_set_name(all.get(), tr("所有文件"));
  gtk_file_filter_add_pattern(all.get(), "*");
  return {std::move(requested), std::move(all)};
}

void GtkDocumentPicker::present(const DocumentPickerOptions& options, View& view, Completion completion) {
  if (dialog_) {
    dialog_->bringToFront();
    answerLater(mainQueue_, std::move(completion), PickingCancelled{});
    return;
  }
  auto* const host = application_.find(view);
  if (!host) return log::warning("The file chooser needs a screen in a window to open over.");
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

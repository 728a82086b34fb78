#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "FileDialog.h"

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/MainQueue.h"

namespace orivex::gtk {

class GtkApplicationPort;

/// The desktop's own file chooser over the window that asks, through the desktop's portal in a sandbox. It offers local
/// files only; it opens in the visitor's documents, later where the last file was picked.
class GtkDocumentPicker final : public DocumentPicker {
 public:
  GtkDocumentPicker(MainQueue& mainQueue, const GtkApplicationPort& application)
      : mainQueue_(mainQueue), application_(application) {}

  void present(const DocumentPickerOptions& options, View& view, Once<void(DocumentPickerOutcome)> completion) override;
  std::variant<std::unique_ptr<FileAccess>, Failure> startAccess(const Url& file) override;

 private:
  void answered(const FileDialog::Files& files);

  MainQueue& mainQueue_;
  const GtkApplicationPort& application_;
  std::unique_ptr<FileDialog> dialog_;  // null while none is open
  Once<void(DocumentPickerOutcome)> completion_;
  GRef<GFile> folder_;
  Subscription leaves_;
};

/// The filters of a file chooser: one for files of these MIME types, such as "application/pdf" or "image/*", named for
/// the visitor by what they are, and one for every file, since the visitor may know better what to send. Empty when
/// every file is requested: without any type, or with "*/*". What is no MIME type is passed over.
std::vector<GRef<GtkFileFilter>> documentFilters(const std::vector<std::string>& mimeTypes);

}  // namespace orivex::gtk

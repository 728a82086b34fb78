#include "GtkDocumentPicker.h"

#include <cerrno>
#include <utility>

#include "../glib/GMemory.h"
#include "../ui/GtkApplicationPort.h"
#include "DocumentFilter.h"
#include "HeldFile.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

using Completion = Once<void(DocumentPickerOutcome)>;

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

GtkDocumentPicker::GtkDocumentPicker(MainQueue& mainQueue, const GtkApplicationPort& application)
    : mainQueue_(mainQueue), application_(application) {}

GtkDocumentPicker::~GtkDocumentPicker() {
  close();
}

void GtkDocumentPicker::present(const DocumentPickerOptions& options, View& view, Completion completion) {
  if (chooser_) {
    bringToFront();
    answerLater(mainQueue_, std::move(completion), PickingCancelled{});
    return;
  }
  auto* const host = application_.find(view);
  if (!host) return log::print("The file chooser needs a screen in a window to open over.");
  completion_ = std::move(completion);
  open(options, host->gtkWindow());
}

void GtkDocumentPicker::open(const DocumentPickerOptions& options, GtkWindow* window) {
  chooser_ = GRef<GtkFileChooserNative>::adopt(
      gtk_file_chooser_native_new("选择文件", window, GTK_FILE_CHOOSER_ACTION_OPEN, "打开", "取消"));
  auto* const chooser = GTK_FILE_CHOOSER(chooser_.get());
  for (const auto& filter : documentFilters(options.mimeTypes)) gtk_file_chooser_add_filter(chooser, filter.get());
  gtk_file_chooser_set_select_multiple(chooser, options.multiple);
  // The chooser would greet the visitor with an error about a folder that has gone.
  if (!folder_ || !g_file_query_exists(folder_.get(), nullptr)) folder_ = documentsFolder();
  if (folder_) gtk_file_chooser_set_current_folder(chooser, folder_.get(), nullptr);
  auto* const dialog = GTK_NATIVE_DIALOG(chooser_.get());
  gtk_native_dialog_set_modal(dialog, TRUE);
  responded_ = SignalConnection::connect<&GtkDocumentPicker::responded>(dialog, "response", this);
  destroyed_ = SignalConnection::connect<&GtkDocumentPicker::windowDestroyed>(window, "destroy", this);
  gtk_native_dialog_show(dialog);
}

void GtkDocumentPicker::close() {
  responded_.disconnect();
  destroyed_.disconnect();
  if (const auto chooser = std::exchange(chooser_, nullptr))
    gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser.get()));
}

// GTK hides its own dialog behind the native one's face; a portal's is out of reach.
void GtkDocumentPicker::bringToFront() const {
  auto* const parent = gtk_native_dialog_get_transient_for(GTK_NATIVE_DIALOG(chooser_.get()));
  const GListPtr toplevels(gtk_window_list_toplevels());
  for (const GList* item = toplevels.get(); item; item = item->next) {
    if (!GTK_IS_FILE_CHOOSER(item->data)) continue;
    auto* const window = GTK_WINDOW(item->data);
    if (gtk_window_get_transient_for(window) == parent) gtk_window_present(window);
  }
}

void GtkDocumentPicker::responded(GtkNativeDialog* /*dialog*/, int response) {
  auto result = outcome(response);
  close();
  answerLater(mainQueue_, std::move(completion_), std::move(result));
}

void GtkDocumentPicker::windowDestroyed(GtkWidget* /*window*/) {
  close();
  completion_ = nullptr;
}

DocumentPickerOutcome GtkDocumentPicker::outcome(int response) {
  if (response != GTK_RESPONSE_ACCEPT) return PickingCancelled{};
  auto* const chooser = GTK_FILE_CHOOSER(chooser_.get());
  // None while the visitor picked among the recent files.
  if (auto folder = GRef<GFile>::adopt(gtk_file_chooser_get_current_folder(chooser))) folder_ = std::move(folder);
  PickedDocuments picked;
  const auto files = GRef<GListModel>::adopt(gtk_file_chooser_get_files(chooser));
  for (guint index = 0; index < g_list_model_get_n_items(files.get()); ++index) {
    const auto file = GRef<GFile>::adopt(G_FILE(g_list_model_get_item(files.get(), index)));
    // A file that only a network protocol reaches has no path, and nobody here could read it.
    if (const char* const path = g_file_peek_path(file.get())) picked.files.push_back(Url::fromFilePath(path));
  }
  return picked;
}

std::variant<std::unique_ptr<FileAccess>, Failure> GtkDocumentPicker::startAccess(const Url& file) {
  const auto path = file.filePath();
  if (!path) return Failure{g_strerror(EINVAL)};
  return HeldFile::open(*path);
}

}  // namespace orivex::gtk

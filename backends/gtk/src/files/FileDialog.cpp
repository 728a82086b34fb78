#include "FileDialog.h"

#include <utility>

#include "../glib/GMemory.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr guint closingTime = 1000;  // milliseconds that a portal's window may stay after its answer

}  // namespace

// Deprecated since GTK 4.10, whose GtkFileDialog shows the visitor the same.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
FileDialog::FileDialog(GtkWindow* parent, const Options& options, Once<void(Files)> answered)
    : parent_(parent),
      answered_(std::move(answered)),
      chooser_(GRef<GtkFileChooserNative>::adopt(
          gtk_file_chooser_native_new(options.title, parent, GTK_FILE_CHOOSER_ACTION_OPEN, tr("打开"), tr("取消")))) {
  auto* const chooser = GTK_FILE_CHOOSER(chooser_.get());
  for (const auto& filter : options.filters) gtk_file_chooser_add_filter(chooser, filter.get());
  if (options.folder) gtk_file_chooser_set_current_folder(chooser, options.folder, nullptr);
  gtk_file_chooser_set_select_multiple(chooser, options.multiple);
  auto* const dialog = GTK_NATIVE_DIALOG(chooser_.get());
  gtk_native_dialog_set_modal(dialog, TRUE);
  responded_ = SignalConnection::connect(dialog, "response", [this, chooser](int response) {
    Files files;
    const auto list = response == GTK_RESPONSE_ACCEPT ? GRef<GListModel>::adopt(gtk_file_chooser_get_files(chooser))
                                                      : GRef<GListModel>();
    for (guint index = 0; list && index < g_list_model_get_n_items(list.get()); ++index) {
      files.push_back(GRef<GFile>::adopt(G_FILE(g_list_model_get_item(list.get(), index))));
    }
    std::move(answered_)(std::move(files));
  });
  gtk_native_dialog_show(dialog);
  ++openCount;
}
G_GNUC_END_IGNORE_DEPRECATIONS

FileDialog::~FileDialog() {
  const auto closed = [](gpointer /*data*/) -> gboolean {
    --openCount;
    return G_SOURCE_REMOVE;
  };
  g_timeout_add(closingTime, closed, nullptr);
  gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser_.get()));
}

std::vector<std::string> FileDialog::pathsOf(const Files& files) {
  std::vector<std::string> paths;
  for (const auto& file : files) {
    if (const char* const path = g_file_peek_path(file.get())) paths.emplace_back(path);
  }
  return paths;
}

// Where there is no portal GTK shows a window of its own; a portal's is out of reach.
void FileDialog::bringToFront() const {
  const GListPtr toplevels(gtk_window_list_toplevels());
  for (const GList* item = toplevels.get(); item; item = item->next) {
    auto* const window = GTK_WINDOW(item->data);
    if (gtk_window_get_transient_for(window) == parent_ && gtk_window_get_modal(window)) gtk_window_present(window);
  }
}

}  // namespace orivex::gtk

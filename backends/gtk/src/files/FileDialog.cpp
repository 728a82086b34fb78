#include "FileDialog.h"

#include <memory>
#include <utility>

#include "../Contained.h"
#include "../glib/GMemory.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr const char* confirm = "打开";

constexpr guint closingTime = 1000;  // milliseconds that a portal's window may stay after its answer

FileDialog::Files filesIn(const GRef<GListModel>& list) {
  FileDialog::Files files;
  const guint count = list ? g_list_model_get_n_items(list.get()) : 0;
  for (guint index = 0; index < count; ++index) {
    files.push_back(GRef<GFile>::adopt(G_FILE(g_list_model_get_item(list.get(), index))));
  }
  return files;
}

}  // namespace

#if GTK_CHECK_VERSION(4, 10, 0)

namespace {

struct Request {
  Once<void(FileDialog::Files)> answer;
  bool multiple;
};

}  // namespace

FileDialog::FileDialog(GtkWindow* parent, const Options& options, Once<void(Files)> answered)
    : parent_(parent), answered_(std::move(answered)) {
  const auto dialog = GRef<GtkFileDialog>::adopt(gtk_file_dialog_new());
  gtk_file_dialog_set_title(dialog.get(), options.title);
  gtk_file_dialog_set_accept_label(dialog.get(), confirm);
  if (!options.filters.empty()) {
    const auto filters = GRef<GListStore>::adopt(g_list_store_new(GTK_TYPE_FILE_FILTER));
    for (const auto& filter : options.filters) g_list_store_append(filters.get(), filter.get());
    gtk_file_dialog_set_filters(dialog.get(), G_LIST_MODEL(filters.get()));
  }
  if (options.folder) gtk_file_dialog_set_initial_folder(dialog.get(), options.folder);
  auto request = std::make_unique<Request>(
      Request{alive_.guard([this](Files files) { std::move(answered_)(std::move(files)); }), options.multiple});
  (options.multiple ? gtk_file_dialog_open_multiple : gtk_file_dialog_open)(dialog.get(), parent, closing_.get(),
                                                                            &FileDialog::finished, request.release());
  ++openCount;
}

FileDialog::~FileDialog() {
  closeSoon();
  g_cancellable_cancel(closing_.get());
}

void FileDialog::finished(GObject* dialog, GAsyncResult* result, gpointer data) noexcept {
  contained([&] {
    const std::unique_ptr<Request> request(static_cast<Request*>(data));
    auto* const chooser = GTK_FILE_DIALOG(dialog);
    GError* raised = nullptr;
    Files files;
    if (request->multiple) {
      files = filesIn(GRef<GListModel>::adopt(gtk_file_dialog_open_multiple_finish(chooser, result, &raised)));
    } else if (auto file = GRef<GFile>::adopt(gtk_file_dialog_open_finish(chooser, result, &raised))) {
      files.push_back(std::move(file));
    }
    const GErrorPtr error(raised);
    if (error && error->domain != GTK_DIALOG_ERROR) {
      log::print("The file chooser failed: " + std::string(error->message));
    }
    std::move(request->answer)(std::move(files));
  });
}

#else

FileDialog::FileDialog(GtkWindow* parent, const Options& options, Once<void(Files)> answered)
    : parent_(parent),
      answered_(std::move(answered)),
      chooser_(GRef<GtkFileChooserNative>::adopt(
          gtk_file_chooser_native_new(options.title, parent, GTK_FILE_CHOOSER_ACTION_OPEN, confirm, "取消"))) {
  auto* const chooser = GTK_FILE_CHOOSER(chooser_.get());
  for (const auto& filter : options.filters) gtk_file_chooser_add_filter(chooser, filter.get());
  if (options.folder) gtk_file_chooser_set_current_folder(chooser, options.folder, nullptr);
  gtk_file_chooser_set_select_multiple(chooser, options.multiple);
  auto* const dialog = GTK_NATIVE_DIALOG(chooser_.get());
  gtk_native_dialog_set_modal(dialog, TRUE);
  responded_ = SignalConnection::connect(dialog, "response", [this, chooser](int response) {
    const bool isAccepted = response == GTK_RESPONSE_ACCEPT;
    std::move(answered_)(isAccepted ? filesIn(GRef<GListModel>::adopt(gtk_file_chooser_get_files(chooser))) : Files());
  });
  gtk_native_dialog_show(dialog);
  ++openCount;
}

FileDialog::~FileDialog() {
  closeSoon();
  gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser_.get()));
}

#endif

void FileDialog::closeSoon() {
  const auto closed = [](gpointer /*data*/) -> gboolean {
    --openCount;
    return G_SOURCE_REMOVE;
  };
  g_timeout_add(closingTime, closed, nullptr);
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

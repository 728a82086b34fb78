#include "MediaChooser.h"

#include <utility>

namespace orivex::gtk {
namespace {

GRef<GtkFileFilter> chooserFilter(const MediaFilter& filter) {
  auto fresh = GRef<GtkFileFilter>::sink(gtk_file_filter_new());
  if (filter.images) gtk_file_filter_add_mime_type(fresh.get(), "image/*");
  if (filter.videos) gtk_file_filter_add_mime_type(fresh.get(), "video/*");
  gtk_file_filter_set_name(fresh.get(), filter.images && filter.videos ? "照片和视频"
                                        : filter.images                ? "照片"
                                                                       : "视频");
  return fresh;
}

}  // namespace

MediaChooser::MediaChooser(GtkWindow* parent, const MediaFilter& filter,
                           std::function<void(std::vector<std::string>)> chosen)
    : chosen_(std::move(chosen)),
      chooser_(GRef<GtkFileChooserNative>::adopt(
          gtk_file_chooser_native_new("浏览", parent, GTK_FILE_CHOOSER_ACTION_OPEN, "打开", "取消"))) {
  auto* const chooser = GTK_FILE_CHOOSER(chooser_.get());
  gtk_file_chooser_set_select_multiple(chooser, TRUE);
  gtk_file_chooser_add_filter(chooser, chooserFilter(filter).get());
  auto* const dialog = GTK_NATIVE_DIALOG(chooser_.get());
  gtk_native_dialog_set_modal(dialog, TRUE);
  responded_ = SignalConnection::connect<&MediaChooser::responded>(dialog, "response", this);
  gtk_native_dialog_show(dialog);
}

MediaChooser::~MediaChooser() {
  responded_.disconnect();
  gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser_.get()));
}

void MediaChooser::responded(GtkNativeDialog* /*dialog*/, int response) {
  std::vector<std::string> paths;
  const auto files = GRef<GListModel>::adopt(gtk_file_chooser_get_files(GTK_FILE_CHOOSER(chooser_.get())));
  const guint count = response == GTK_RESPONSE_ACCEPT ? g_list_model_get_n_items(files.get()) : 0;
  for (guint index = 0; index < count; ++index) {
    const auto file = GRef<GFile>::adopt(G_FILE(g_list_model_get_item(files.get(), index)));
    // A file that only a network protocol reaches has no path, and nobody here could read it.
    if (const char* const path = g_file_peek_path(file.get())) paths.emplace_back(path);
  }
  const auto chosen = chosen_;
  chosen(std::move(paths));
}

}  // namespace orivex::gtk

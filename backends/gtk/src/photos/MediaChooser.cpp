#include "MediaChooser.h"

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

std::unique_ptr<FileDialog> chooseMedia(GtkWindow* parent, const MediaFilter& filter,
                                        Once<void(std::vector<std::string>)> chosen) {
  return std::make_unique<FileDialog>(
      parent, FileDialog::Options{.title = "浏览", .filters = {chooserFilter(filter)}, .multiple = true},
      [chosen = std::move(chosen)](const FileDialog::Files& files) mutable {
        std::move(chosen)(FileDialog::pathsOf(files));
      });
}

}  // namespace orivex::gtk

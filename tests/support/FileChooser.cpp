#include "FileChooser.h"

#include <string_view>

#include "MainLoop.h"
#include "Widgets.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

// Waits until the chooser shows its first folder: one that is interrupted before complains in a dialog.
void waitForFolder(GtkWindow* chooser) {
  const auto isList = [](GtkWidget* widget) {
    const std::string_view type = G_OBJECT_TYPE_NAME(widget);
    return type == "GtkTreeView" || type == "GtkColumnView";  // in newer GTK
  };
  wait(
      [&] {
        GObject* model = nullptr;
        if (GtkWidget* const list = findBelow(GTK_WIDGET(chooser), isList))
          g_object_get(list, "model", &model, nullptr);
        return GRef<GObject>::adopt(model).get() != nullptr;
      },
      5);
}

}  // namespace

// Newer GTK deprecates the chooser, and yet shows it where there is no portal.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
GtkWindow* openFileChooser() {
  const GListPtr toplevels(gtk_window_list_toplevels());
  for (const GList* item = toplevels.get(); item; item = item->next) {
    if (GTK_IS_FILE_CHOOSER_DIALOG(item->data) && gtk_widget_get_visible(GTK_WIDGET(item->data))) {
      return GTK_WINDOW(item->data);
    }
  }
  return nullptr;
}

bool chooseFile(const std::string& path) {
  auto* const window = openFileChooser();
  if (!window) return false;
  waitForFolder(window);
  const auto file = GRef<GFile>::adopt(g_file_new_for_path(path.c_str()));
  gtk_file_chooser_set_file(GTK_FILE_CHOOSER(window), file.get(), nullptr);
  const bool selected = wait(
      [&] {
        const auto current = GRef<GFile>::adopt(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(window)));
        return current && g_file_equal(current.get(), file.get());
      },
      5);
  if (selected) gtk_dialog_response(GTK_DIALOG(window), GTK_RESPONSE_ACCEPT);
  return selected;
}

std::string fileChooserFolder() {
  const auto folder = GRef<GFile>::adopt(gtk_file_chooser_get_current_folder(GTK_FILE_CHOOSER(openFileChooser())));
  return folder ? g_file_peek_path(folder.get()) : "";
}

std::vector<std::string> fileChooserFilters() {
  const auto filters = GRef<GListModel>::adopt(gtk_file_chooser_get_filters(GTK_FILE_CHOOSER(openFileChooser())));
  std::vector<std::string> names;
  for (guint index = 0; index < g_list_model_get_n_items(filters.get()); ++index) {
    const auto filter = GRef<GtkFileFilter>::adopt(GTK_FILE_FILTER(g_list_model_get_item(filters.get(), index)));
    names.emplace_back(gtk_file_filter_get_name(filter.get()));
  }
  return names;
}

void cancelFileChooser() {
  auto* const window = openFileChooser();
  if (!window) return;
  waitForFolder(window);
  gtk_dialog_response(GTK_DIALOG(window), GTK_RESPONSE_CANCEL);
}
G_GNUC_END_IGNORE_DEPRECATIONS

}  // namespace orivex::gtk

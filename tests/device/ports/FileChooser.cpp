#include "FileChooser.h"

#include "../GtkFixture.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"

namespace orivex::gtk {
namespace {

// GTK does not tell when the chooser has read its first folder; one that is interrupted complains in a dialog.
constexpr double readingTime = 0.4;

}  // namespace

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
  pass(readingTime);
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

void cancelFileChooser() {
  pass(readingTime);
  if (auto* const window = openFileChooser()) gtk_dialog_response(GTK_DIALOG(window), GTK_RESPONSE_CANCEL);
}

}  // namespace orivex::gtk

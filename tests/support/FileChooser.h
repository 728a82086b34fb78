#pragma once

#include <string>
#include <vector>

#include <gtk/gtk.h>

/// The visitor's hands on GTK's own file chooser.
namespace orivex::gtk {

/// The chooser that is open; null without one.
GtkWindow* openFileChooser();

/// Selects the file once the chooser has read its folder, and confirms. Returns whether that worked.
bool chooseFile(const std::string& path);

/// The folder that it shows, "" while it has none.
std::string fileChooserFolder();

/// The names of its filters.
std::vector<std::string> fileChooserFilters();

/// Closes the chooser without a choice.
void cancelFileChooser();

}  // namespace orivex::gtk

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "../files/FileDialog.h"
#include "MediaNames.h"

namespace orivex::gtk {

/// Opens the desktop's own chooser for photos and videos, several at once; in a sandbox its portal reaches every folder
/// of the visitor. `chosen` gets the paths, none when the visitor chose nothing; it may destroy the dialog.
std::unique_ptr<FileDialog> chooseMedia(GtkWindow* parent, const MediaFilter& filter,
                                        Once<void(std::vector<std::string>)> chosen);

}  // namespace orivex::gtk

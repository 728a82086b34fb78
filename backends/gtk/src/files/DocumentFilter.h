#pragma once

#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/GRef.h"

namespace orivex::gtk {

/// The filter of a file chooser that offers only files of these MIME types, such as "application/pdf" or "image/*",
/// named for the visitor by what they are. Null when every file is to be offered: without any type, or with "*/*".
/// What is no MIME type is passed over.
GRef<GtkFileFilter> documentFilter(const std::vector<std::string>& mimeTypes);

/// What the chooser offers: the requested types, unless that is every file, and then every file: the visitor may know
/// better what he wants to send. Empty where there is nothing to choose between.
std::vector<GRef<GtkFileFilter>> documentFilters(const std::vector<std::string>& mimeTypes);

}  // namespace orivex::gtk

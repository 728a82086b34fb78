#pragma once

#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/GRef.h"

namespace orivex::gtk {

/// The filters of a file chooser: one for files of these MIME types, such as "application/pdf" or "image/*", named for
/// the visitor by what they are, and one for every file, since the visitor may know better what to send. Empty when
/// every file is requested: without any type, or with "*/*". What is no MIME type is passed over.
std::vector<GRef<GtkFileFilter>> documentFilters(const std::vector<std::string>& mimeTypes);

}  // namespace orivex::gtk

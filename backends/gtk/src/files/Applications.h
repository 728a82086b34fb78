#pragma once

#include <vector>

#include <gio/gio.h>

#include "../glib/GRef.h"

#include "orivex/platform/base/Url.h"
#include "orivex/platform/ports/TypeRegistry.h"

namespace orivex::gtk {

/// The visitor's applications that open a file, each once, the best choice first: for a local file those for its type;
/// for an address of the web those for the type of its path's extension, and the browser. Only applications that take
/// such addresses and want to be shown. Reads the first bytes of a local file, so it may block for a moment.
std::vector<GRef<GAppInfo>> applicationsFor(const Url& file, const TypeRegistry& types);

/// Hands the file to the application, in the background. A failure is one log line.
void launch(GAppInfo* application, const Url& file);

/// Has the desktop's portal show the visitor which applications open `file`, a local one or an http(s) address: a host
/// in a sandbox sees none of them itself. Returns at once; a portal that refuses is one log line. Main thread.
void openThroughPortal(const Url& file);

}  // namespace orivex::gtk

#pragma once

#include "orivex/platform/base/Url.h"

namespace orivex::gtk {

/// Has the desktop's portal show the visitor which applications open `file`, a local one or an http(s) address: a host
/// in a sandbox sees none of them itself. Returns at once; a portal that refuses is one log line. Main thread.
void openThroughPortal(const Url& file);

}  // namespace orivex::gtk

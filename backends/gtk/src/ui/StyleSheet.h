#pragma once

namespace orivex::gtk {

/// Adds style rules for the widgets of this component to the default display, below what the host adds by itself with
/// a higher priority. Call it once for each text. Main thread.
void installStyle(const char* css);

}  // namespace orivex::gtk

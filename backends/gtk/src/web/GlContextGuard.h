#pragma once

namespace orivex::gtk {

/// Lets GTK paint while web views are about. WebKit makes GL contexts of its own current on the main thread: while a
/// web view is made, and whenever it likes in callbacks of its own. GTK 4.8 remembers which of its contexts it made
/// current last, does not look again, and so would paint without one, which ends the process.
///
/// From the first call on, for the life of the process, GTK makes its context current anew for each frame of each
/// window: a stale context is whichever painted last, not that of the window with the web view. Call on the main thread
/// before the first web view is made.
void guardGlContext();

}  // namespace orivex::gtk

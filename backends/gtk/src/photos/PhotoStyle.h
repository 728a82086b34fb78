#pragma once

namespace orivex::gtk {

/// Adds the style rules of the photo library's sheet to the default display, once. Main thread.
void installPhotoStyle();

}  // namespace orivex::gtk

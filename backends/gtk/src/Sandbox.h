#pragma once

#include <glib.h>

namespace orivex::gtk {

/// Whether the host runs in a sandbox that reaches the desktop through its portals alone.
inline bool runsInSandbox() {
  return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS) || g_getenv("SNAP");
}

}  // namespace orivex::gtk

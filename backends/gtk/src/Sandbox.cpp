#include "Sandbox.h"

#include <glib.h>

namespace orivex::gtk {

bool runsInSandbox() {
  return g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS) || g_getenv("SNAP");
}

}  // namespace orivex::gtk

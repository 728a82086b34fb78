#pragma once

namespace orivex::gtk {

/// Whether the host runs in a sandbox that reaches the desktop through its portals alone.
bool runsInSandbox();

}  // namespace orivex::gtk

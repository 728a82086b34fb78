#pragma once

namespace orivex::gtk {

/// Hands the log to GLib's structured log, domain "Orivex": G_MESSAGES_DEBUG, the journal and a writer of the host's
/// work as for any other library. Failures to open a chat and other failures are warnings there, as an error would end
/// the process.
void logToGlib();

}  // namespace orivex::gtk

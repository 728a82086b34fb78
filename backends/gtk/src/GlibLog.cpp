#include "GlibLog.h"

#include <string>

#include <glib.h>

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

constexpr const char* domain = "Orivex";

GLogLevelFlags glibLevel(log::Level level) {
  if (level <= log::Level::warning) return G_LOG_LEVEL_WARNING;
  return level == log::Level::info ? G_LOG_LEVEL_INFO : G_LOG_LEVEL_DEBUG;
}

// What GLib would drop has been asked for by the component's own means.
bool write(log::Level level, const std::string& line) {
  if (g_log_writer_default_would_drop(glibLevel(level), domain)) return false;
  g_log_structured(domain, glibLevel(level), "MESSAGE", "%s", line.c_str());
  return true;
}

}  // namespace

void logToGlib() {
  log::setDeviceLog(write);
  const bool isAskedFor = !g_log_writer_default_would_drop(G_LOG_LEVEL_DEBUG, domain);
  if (isAskedFor && !log::isEnabled(log::Level::debug)) log::setLevel(log::Level::debug);
}

}  // namespace orivex::gtk

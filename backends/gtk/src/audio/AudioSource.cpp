#include "AudioSource.h"

#include <filesystem>

#include <gst/gst.h>

#include "../glib/GRef.h"

namespace orivex::gtk {
namespace {

bool hasElement(const char* name) {
  return static_cast<bool>(GRef<GstElementFactory>::adopt(gst_element_factory_find(name)));
}

bool existsInRuntimeFolder(const char* socket) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::path(g_get_user_runtime_dir()) / socket, error);
}

}  // namespace

std::string audioSource() {
  if (const char* const given = g_getenv("ORIVEX_AUDIO_SOURCE"); given && *given) return given;
  // Microseconds. Few pieces a second cost little; much room for them outlasts a disk that is slow for a while.
  if ((g_getenv("PULSE_SERVER") || existsInRuntimeFolder("pulse/native")) && hasElement("pulsesrc")) {
    return "pulsesrc latency-time=20000 buffer-time=2000000";
  }
  if (existsInRuntimeFolder("pipewire-0") && hasElement("pipewiresrc")) return "pipewiresrc";
  return "autoaudiosrc";
}

}  // namespace orivex::gtk

#pragma once

#include <string>

namespace orivex::gtk {

/// The element that records, described as gst-launch takes it: that of the sound server which runs, PulseAudio's
/// protocol first, since PipeWire speaks it too; without a server, whatever GStreamer finds. The environment variable
/// ORIVEX_AUDIO_SOURCE names another one. GStreamer must be initialised; any thread.
std::string audioSource();

}  // namespace orivex::gtk

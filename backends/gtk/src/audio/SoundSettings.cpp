#include "SoundSettings.h"

#include <string>

#include <gdk/gdk.h>
#include <gio/gdesktopappinfo.h>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// The nearest to the microphone's own switch first: GNOME, KDE Plasma, and what any desktop may have.
constexpr const char* programs[] = {"gnome-microphone-panel.desktop", "gnome-sound-panel.desktop",
                                    "kcm_pulseaudio.desktop", "org.pulseaudio.pavucontrol.desktop",
                                    "pavucontrol.desktop"};

GRef<GDesktopAppInfo> find() {
  for (const auto* id : programs) {
    if (auto program = GRef<GDesktopAppInfo>::adopt(g_desktop_app_info_new(id))) return program;
  }
  return nullptr;
}

}  // namespace

bool SoundSettings::areAvailable() {
  return static_cast<bool>(find());
}

void SoundSettings::open() {
  const auto program = find();
  if (!program) return;
  const auto context = GRef<GdkAppLaunchContext>::adopt(gdk_display_get_app_launch_context(gdk_display_get_default()));
  GError* raised = nullptr;
  g_app_info_launch(G_APP_INFO(program.get()), nullptr, G_APP_LAUNCH_CONTEXT(context.get()), &raised);
  if (const GErrorPtr error(raised); error)
    log::print("Cannot open the sound settings: " + std::string(error->message));
}

}  // namespace orivex::gtk

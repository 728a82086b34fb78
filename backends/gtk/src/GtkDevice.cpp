#include "GtkDevice.h"

#include <cerrno>

#include "camera/CaptureFile.h"
#include "files/LeftOvers.h"
#include "glib/GMemory.h"
#include "web/WebSession.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

GtkDevice* installedDevice = nullptr;

std::string applicationId() {
  const char* const id =
      g_application_get_default() ? g_application_get_application_id(g_application_get_default()) : nullptr;
  return id ? id : "";
}

// What the visitor's data for this application are kept under.
std::string storageName() {
  auto id = applicationId();
  return id.empty() ? program_invocation_short_name : id;
}

GtkDevice& device() {
  if (!installedDevice) fatalError("OrivexSDK/Gtk", "call orivex::gtk::install() before attaching a window.");
  return *installedDevice;
}

}  // namespace

// The component's bundle lies beside this library, as it lies beside OrivexSDK.
GtkDevice::GtkDevice()
    : componentBundle_(FolderBundle::besideLibrary(&installedDevice)),
      session_(makeWebSession(storageName())),
      webEngines_(mainQueue_, session_, componentBundle_.pathOf("web-process")),
      websiteDataStore_(session_.get(), webDataFolder(storageName())),
      mainBundle_(applicationId()),
      userDefaults_(KeyFileUserDefaults::defaultPath()),
      device_(storageName()),
      fileManager_(storageName()),
      decoder_(mainQueue_, componentBundle_.pathOf("decoder/OrivexDecoder")),
      recordPermission_(mainQueue_, application_, ConsentFile(ConsentFile::defaultPath(), storageName())),
      platform_{.mainQueue = mainQueue_,
                .application = application_,
                .webEngines = webEngines_,
                .websiteDataStore = websiteDataStore_,
                .animator = animator_,
                .progressOverlay = progressOverlay_,
                .httpClient = httpClient_,
                .mainBundle = mainBundle_,
                .componentBundle = componentBundle_,
                .userDefaults = userDefaults_,
                .device = device_,
                .fileManager = fileManager_,
                .typeRegistry = typeRegistry_,
                .imageCodec = imageCodec_,
                .mediaProbe = mediaProbe_,
                .documentPicker = documentPicker_,
                .documentInteraction = documentInteraction_,
                .photoLibrary = photoLibrary_,
                .camera = camera_,
                .audioSession = audioSession_,
                .recordPermission = recordPermission_} {
  const GCharPtr clips(g_build_filename(g_get_user_data_dir(), "orivex-sdk", storageName().c_str(), nullptr));
  mainQueue_.global([clips = std::string(clips.get()), captures = captureFolder()] {
    removeLeftOvers(clips, ".wav");
    removeLeftOvers(captures, "");
  });
}

void install() {
  if (installedDevice) return;
  if (!gtk_init_check()) fatalError("OrivexSDK/Gtk", "orivex::gtk::install() needs a display, and there is none.");
  // Lives as long as the process: singletons and late callbacks of threads refer to it.
  installedDevice = new GtkDevice;
  Platform::install(&installedDevice->platform());
}

std::shared_ptr<Window> attach(GtkWindow* window, const Surroundings& surroundings) {
  return device().application().attach(window, surroundings).window();
}

void setSurroundings(GtkWindow* window, const Surroundings& surroundings) {
  if (auto* const host = device().application().find(window)) host->setSurroundings(surroundings);
}

void allowScheme(const std::string& scheme) {
  device().application().allow(scheme);
}

}  // namespace orivex::gtk

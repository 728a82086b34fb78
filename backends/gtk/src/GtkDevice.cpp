#include <cerrno>

#include "Bundles.h"
#include "GlibLog.h"
#include "GlibMainQueue.h"
#include "KeyFileUserDefaults.h"
#include "MachineDevice.h"
#include "av/GstAudioSession.h"
#include "av/GstMediaProbe.h"
#include "av/GtkRecordPermission.h"
#include "camera/CaptureFile.h"
#include "camera/GtkCamera.h"
#include "decoding/Decoder.h"
#include "files/GioTypeRegistry.h"
#include "files/GtkDocumentPicker.h"
#include "files/OpenWithMenu.h"
#include "files/XdgFileManager.h"
#include "glib/GMemory.h"
#include "glib/GRef.h"
#include "net/CurlHttpClient.h"
#include "photos/GtkPhotoLibrary.h"
#include "pictures/PictureCodec.h"
#include "ui/GtkApplicationPort.h"
#include "ui/GtkProgressOverlay.h"
#include "ui/views/AdwAnimator.h"
#include "web/WebKitDataStore.h"
#include "web/WebKitEngine.h"
#include "web/WebSession.h"

#include "orivex/gtk/Gtk.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

class GtkDevice;
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

/// Every port of the real device. Members stand in the order in which they need each other.
class GtkDevice {
 public:
  GtkDevice() {
    const GCharPtr clips(g_build_filename(g_get_user_data_dir(), "orivex-sdk", storageName().c_str(), nullptr));
    mainQueue_.global([clips = std::string(clips.get()), captures = captureFolder()] {
      removeLeftOvers(clips, ".wav");
      removeLeftOvers(captures, "");
    });
  }

  GtkApplicationPort& application() { return application_; }
  const Platform& platform() const { return platform_; }

 private:
  GlibMainQueue mainQueue_;
  // The component's bundle lies beside this library, as it lies beside OrivexSDK.
  FolderBundle componentBundle_ = FolderBundle::besideLibrary(&installedDevice);
  GtkApplicationPort application_{mainQueue_};
  AdwAnimator animator_{mainQueue_, application_};
  GtkProgressOverlay progressOverlay_{mainQueue_, application_};
  GRef<WebKitNetworkSession> session_ = makeWebSession(storageName());
  WebKitEngineFactory webEngines_{mainQueue_, session_, componentBundle_.pathOf("web-process")};
  WebKitDataStore websiteDataStore_{session_.get(), webDataFolder(storageName())};
  CurlHttpClient httpClient_{mainQueue_};
  DesktopEntryBundle mainBundle_{applicationId()};
  KeyFileUserDefaults userDefaults_{KeyFileUserDefaults::defaultPath()};
  MachineDevice device_{storageName()};
  XdgFileManager fileManager_{storageName()};
  GioTypeRegistry typeRegistry_;
  Decoder decoder_{mainQueue_, componentBundle_.pathOf("decoder/OrivexDecoder")};
  PictureCodec imageCodec_{decoder_};
  GstMediaProbe mediaProbe_{decoder_};
  GtkDocumentPicker documentPicker_{mainQueue_, application_};
  OpenWithMenu documentInteraction_{mainQueue_, application_, typeRegistry_};
  GtkPhotoLibrary photoLibrary_{mainQueue_, application_, mediaReader(decoder_)};
  GstAudioSession audioSession_{mainQueue_};
  GtkRecordPermission recordPermission_{mainQueue_, application_,
                                        ConsentFile(ConsentFile::defaultPath(), storageName())};
  GtkCamera camera_{mainQueue_, application_, recordPermission_};
  const Platform platform_{.mainQueue = mainQueue_,
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
                           .recordPermission = recordPermission_};
};

GtkDevice& device() {
  if (!installedDevice)
    fatalError("OrivexSDK/Gtk", "call orivex::gtk::install() before a window or a widget shows screens.");
  return *installedDevice;
}

}  // namespace

void install() {
  if (installedDevice) return;
  if (!gtk_init_check()) fatalError("OrivexSDK/Gtk", "orivex::gtk::install() needs a display, and there is none.");
  logToGlib();
  // Lives as long as the process: singletons and late callbacks of threads refer to it.
  installedDevice = new GtkDevice;
  Platform::install(&installedDevice->platform());
}

std::shared_ptr<Window> attach(GtkWindow* window, const Surroundings& surroundings) {
  return device().application().attach(window, surroundings).window();
}

GtkWidget* widgetFor(const std::shared_ptr<ViewController>& screen) {
  return device().application().embed(screen);
}

void setSurroundings(GtkWindow* window, const Surroundings& surroundings) {
  if (auto* const host = device().application().find(window)) host->setSurroundings(surroundings);
}

void allowScheme(const std::string& scheme) {
  device().application().allow(scheme);
}

}  // namespace orivex::gtk

#include "orivex/testing/VirtualDevice.h"

namespace orivex::testing {

VirtualDevice::VirtualDevice()
    : mainBundle_(mainQueue_, {{"CFBundleDisplayName", "Virtual Host"},
                               {"CFBundleName", "VirtualHost"},
                               {"CFBundleShortVersionString", "1.0"},
                               {"CFBundleVersion", "1"}}),
      componentBundle_(mainQueue_, {{"CFBundleShortVersionString", "1.2.3"}, {"CFBundleVersion", "4"}}),
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
                .device = identity_,
                .fileManager = fileManager_,
                .typeRegistry = typeRegistry_,
                .imageCodec = imageCodec_,
                .mediaProbe = mediaProbe_,
                .documentPicker = documentPicker_,
                .documentInteraction = documentInteraction_,
                .photoLibrary = photoLibrary_,
                .camera = camera_,
                .audioSession = audioSession_,
                .recordPermission = recordPermission_},
      previous_(ProcessState::use(&process_)) {
  componentBundle_.addResource("skeleton", "html", "<!doctype html>\n<title>Skeleton</title>\n");
  Platform::install(&platform_);
}

VirtualDevice::~VirtualDevice() {
  // Screens and what a process has one of go while the ports that they use are still there.
  application_.window()->setRootViewController(nullptr);
  mainQueue_.discardPending();
  process_.clear();
  ProcessState::use(previous_);
}

void VirtualDevice::forgetHistory() {
  application_.forgetOpenedUrls();
  httpClient_.forgetRequests();
  httpClient_.forgetUploads();
  progressOverlay_.forgetHistory();
  imageCodec_.forgetCalls();
  fileManager_.forgetRemoved();
  documentInteraction_.forgetMenus();
  recordPermission_.forgetAsked();
  audioSession_.forgetSounds();
}

VirtualDevice& install() {
  static VirtualDevice device;
  return device;
}

}  // namespace orivex::testing

#pragma once

#include "orivex/platform/Platform.h"
#include "orivex/platform/base/ProcessState.h"
#include "orivex/testing/VirtualApplication.h"
#include "orivex/testing/VirtualAudioSession.h"
#include "orivex/testing/VirtualBundle.h"
#include "orivex/testing/VirtualHttpClient.h"
#include "orivex/testing/VirtualMainQueue.h"
#include "orivex/testing/VirtualMedia.h"
#include "orivex/testing/VirtualPickers.h"
#include "orivex/testing/VirtualProgressOverlay.h"
#include "orivex/testing/VirtualStorage.h"
#include "orivex/testing/VirtualWebEngine.h"

namespace orivex::testing {

/// A device in memory for tests without a display, a network or a clock. It is installed as the platform for as long
/// as it lives; the thread that makes it is the main thread. Screens that a test still holds must go before it does.
/// Each device is a fresh process: the session, the managers and all else that a process has one of begin and end with
/// it, so the tests of one program do not see each other.
///
/// Nothing happens by itself: a test acts, then lets time pass with `advance` or `runUntilIdle`, then looks. Calls off
/// the main thread to what belongs to it stop the process, work on the global queue included.
///
///     orivex::testing::VirtualDevice device;
///     device.webEngines().setLoader([](auto& engine) { engine.completeLoad(); });
///     device.application().window()->setRootViewController(screen);
///     device.advance(5);
///     device.webEngines().engines().front()->post("goBack", "{}");
///     device.runUntilIdle();
class VirtualDevice {
 public:
  VirtualDevice();
  VirtualDevice(const VirtualDevice&) = delete;
  VirtualDevice& operator=(const VirtualDevice&) = delete;
  ~VirtualDevice();

  const Platform& platform() const { return platform_; }

  VirtualMainQueue& mainQueue() { return mainQueue_; }
  VirtualApplication& application() { return application_; }
  VirtualWebEngineFactory& webEngines() { return webEngines_; }
  VirtualWebsiteDataStore& websiteDataStore() { return websiteDataStore_; }
  VirtualAnimator& animator() { return animator_; }
  VirtualProgressOverlay& progressOverlay() { return progressOverlay_; }
  VirtualHttpClient& httpClient() { return httpClient_; }

  /// The host's: at first "Virtual Host", version 1.0, build 1, and no resources.
  VirtualBundle& mainBundle() { return mainBundle_; }

  /// The component's: at first version 1.2.3, build 4, and an empty "skeleton.html".
  VirtualBundle& componentBundle() { return componentBundle_; }
  VirtualUserDefaults& userDefaults() { return userDefaults_; }
  VirtualDeviceIdentity& identity() { return identity_; }
  VirtualFileManager& fileManager() { return fileManager_; }
  VirtualTypeRegistry& typeRegistry() { return typeRegistry_; }
  VirtualImageCodec& imageCodec() { return imageCodec_; }
  VirtualMediaProbe& mediaProbe() { return mediaProbe_; }
  VirtualDocumentPicker& documentPicker() { return documentPicker_; }
  VirtualDocumentInteraction& documentInteraction() { return documentInteraction_; }
  VirtualPhotoLibrary& photoLibrary() { return photoLibrary_; }
  VirtualCamera& camera() { return camera_; }
  VirtualAudioSession& audioSession() { return audioSession_; }
  VirtualRecordPermission& recordPermission() { return recordPermission_; }

  /// Drops what the parts remember of the past, for tests that go on for long; what shows or runs now stays.
  void forgetHistory();

  /// Lets `seconds` pass on the main queue.
  void advance(double seconds) { mainQueue_.advance(seconds); }

  /// Runs what is due now.
  void runUntilIdle() { mainQueue_.runUntilIdle(); }

 private:
  VirtualMainQueue mainQueue_;
  VirtualApplication application_{mainQueue_};
  VirtualWebEngineFactory webEngines_{mainQueue_};
  VirtualWebsiteDataStore websiteDataStore_{mainQueue_};
  VirtualAnimator animator_{mainQueue_};
  VirtualProgressOverlay progressOverlay_{mainQueue_, application_};
  VirtualHttpClient httpClient_{mainQueue_};
  VirtualBundle mainBundle_;
  VirtualBundle componentBundle_;
  VirtualUserDefaults userDefaults_{mainQueue_};
  VirtualDeviceIdentity identity_{mainQueue_};
  VirtualFileManager fileManager_{mainQueue_};
  VirtualTypeRegistry typeRegistry_;
  VirtualImageCodec imageCodec_;
  VirtualMediaProbe mediaProbe_{mainQueue_};
  VirtualDocumentPicker documentPicker_{mainQueue_};
  VirtualDocumentInteraction documentInteraction_{mainQueue_};
  VirtualPhotoLibrary photoLibrary_{mainQueue_};
  VirtualCamera camera_{mainQueue_};
  VirtualAudioSession audioSession_{mainQueue_};
  VirtualRecordPermission recordPermission_{mainQueue_};
  Platform platform_;
  ProcessState process_;
  ProcessState* previous_;
};

/// Installs a virtual device for the rest of the process and returns it, the same one at each call.
VirtualDevice& install();

}  // namespace orivex::testing

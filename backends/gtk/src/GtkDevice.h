#pragma once

#include "DesktopEntryBundle.h"
#include "FolderBundle.h"
#include "GlibMainQueue.h"
#include "KeyFileUserDefaults.h"
#include "MachineDevice.h"
#include "WebKitDataStore.h"
#include "audio/GstAudioSession.h"
#include "audio/GtkRecordPermission.h"
#include "camera/GtkCamera.h"
#include "decoding/Decoder.h"
#include "files/GioTypeRegistry.h"
#include "files/GtkDocumentPicker.h"
#include "files/OpenWithMenu.h"
#include "files/XdgFileManager.h"
#include "glib/GRef.h"
#include "net/CurlHttpClient.h"
#include "photos/DecodedMedia.h"
#include "photos/GtkPhotoLibrary.h"
#include "pictures/PictureCodec.h"
#include "ui/AdwAnimator.h"
#include "ui/GtkApplicationPort.h"
#include "ui/GtkProgressOverlay.h"
#include "video/GstMediaProbe.h"
#include "web/WebKitEngine.h"

#include "orivex/platform/Platform.h"

namespace orivex::gtk {

/// Every port of the real device. Members stand in the order in which they need each other.
class GtkDevice {
 public:
  GtkDevice();

  GtkApplicationPort& application() { return application_; }
  const Platform& platform() const { return platform_; }

 private:
  GlibMainQueue mainQueue_;
  FolderBundle componentBundle_;
  GtkApplicationPort application_{mainQueue_};
  AdwAnimator animator_{mainQueue_, application_};
  GtkProgressOverlay progressOverlay_{mainQueue_, application_};
  GRef<WebKitNetworkSession> session_;
  WebKitEngineFactory webEngines_;
  WebKitDataStore websiteDataStore_;
  CurlHttpClient httpClient_{mainQueue_};
  DesktopEntryBundle mainBundle_;
  KeyFileUserDefaults userDefaults_;
  MachineDevice device_;
  XdgFileManager fileManager_;
  GioTypeRegistry typeRegistry_;
  Decoder decoder_;
  PictureCodec imageCodec_{decoder_};
  GstMediaProbe mediaProbe_{decoder_};
  DecodedMedia mediaReader_{decoder_};
  GtkDocumentPicker documentPicker_{mainQueue_, application_};
  OpenWithMenu documentInteraction_{mainQueue_, application_, typeRegistry_};
  GtkPhotoLibrary photoLibrary_{mainQueue_, application_, mediaReader_};
  GstAudioSession audioSession_{mainQueue_};
  GtkRecordPermission recordPermission_;
  GtkCamera camera_{mainQueue_, application_, recordPermission_};
  const Platform platform_;
};

}  // namespace orivex::gtk

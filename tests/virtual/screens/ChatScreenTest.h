#pragma once

#include <memory>

#include "DeviceTest.h"

#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/ui/NavigationController.h"
#include "orivex/platform/ui/WebView.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/sdk/OVKFApi.h"

namespace orivex::testing {

/// The identifier of the virtual device as servers see it.
inline constexpr const char* virtualDeviceId = "6f1d2c3b-4a59-4e68-8b77-90a1b2c3d4e5";

/// A host whose window shows a stack of one screen, in a process whose session is not started.
class ChatScreenTest : public DeviceTest {
 protected:
  ChatScreenTest();

  /// A chat screen with a session at "https://chat.example", not shown.
  static std::shared_ptr<OVKFApi> started();

  /// Such a screen, presented over the host or pushed on its stack without an animation. Time has not passed: its page
  /// check has been sent, no more.
  std::shared_ptr<OVKFApi> present();
  std::shared_ptr<OVKFApi> push();

  /// Such a presented screen whose page check has been answered.
  std::shared_ptr<OVKFApi> presentChecked();

  /// The same in a second window of the host, smaller and without insets, that nobody has drawn.
  std::shared_ptr<OVKFApi> presentInSecond();

  /// From now on every upload is answered so.
  void serveUploads(const VirtualUploadReply& reply) {
    device_.httpClient().setUploadServer([reply](const UploadRequest&) { return reply; });
  }

  static VirtualWebEngine& engineOf(const std::shared_ptr<WebView>& view);

  /// What plays the chat page of `screen`.
  static VirtualWebEngine& pageOf(OVKFApi& screen) { return engineOf(screen.webView()); }

  const std::shared_ptr<ViewController> hostScreen_ = std::make_shared<ViewController>();
  const std::shared_ptr<NavigationController> hostStack_ = std::make_shared<NavigationController>(hostScreen_);
  const std::shared_ptr<Window> second_ = std::make_shared<Window>();
};

}  // namespace orivex::testing

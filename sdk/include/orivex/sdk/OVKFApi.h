#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orivex/Export.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ui/ViewController.h"
#include "orivex/sdk/Conversation.h"

namespace orivex {

class ChatEvents;
class ChatNavigation;
class ChatPageRequests;
class ChatWebViewHost;
class EdgePanBack;
class HostMessages;
class PageOrigins;
class ScriptMessageBridge;
class WebView;
struct MessageBody;
struct ScriptMessage;
struct UserMappingModel;
struct WebEngineHandlers;

/// The chat screen. Make one with std::make_shared for each conversation, call `startSession`, then present or push it.
/// Main thread only.
///
///     auto chat = std::make_shared<orivex::OVKFApi>();
///     chat->startSession("https://chat.example", "entry", "key", user);
///     window->rootViewController()->present(chat, true);
class ORIVEX_API OVKFApi : public ViewController {
 public:
  OVKFApi();
  ~OVKFApi() override;

  /// Receiver of conversation events; kept alive by the screen. The name reads "conversion", as hosts know it.
  std::shared_ptr<OVKFApiConversationDelegate> conversionDelegate;

  /// Debug mode of the page: its menu leads to the web inspector. Set it before the screen shows. The in-page consoles
  /// are switched by the user defaults "enable_vconsole" and "enable_eruda" instead.
  bool debug = false;

  /// Origins, such as "https://chat.example", whose pages are served as the chat page is when it leads to them. Pages
  /// of other origins than these, the chat server's and those where its redirects lead can only open links, say that
  /// they are there, and go back; they get neither the environment record nor the consoles. Set it before the screen
  /// shows.
  std::vector<std::string> allowedOrigins;

  /// Lets the page post "shortCut", "message" and "unreadCount", which reach the delegate. Set it before the screen
  /// shows.
  bool conversationEvents = false;

  /// Records the session and builds the chat page address; the page is loaded when the screen shows. No argument is
  /// checked. A visitor without a `deviceId` gets this device's identifier, written into `user`. `callBack`, if any, is
  /// called at once, when the configuration is stored. An address that does not parse leaves the earlier one in place,
  /// with one log line. `user` must not be null.
  void startSession(const std::string& host, const std::string& entryId, const std::string& appkey,
                    const std::shared_ptr<UserMappingModel>& user, const std::function<void()>& callBack = nullptr);

  /// Puts `msgBody`, with its `msgType` set, into the queue that the next `startSession` hands to the page. Of several,
  /// the page receives the last. `msgBody` must not be null.
  void sendMessage(std::int64_t msgType, const std::shared_ptr<MessageBody>& msgBody);

  /// Hands `msgBody`, with its `msgType` set, to the page that shows, by its function `window.handleHostMessage`, which
  /// gets the record as an object. What comes before a page has that function waits for it, in order, as long as the
  /// screen lives. `msgBody` must not be null.
  void showMessage(std::int64_t msgType, const std::shared_ptr<MessageBody>& msgBody);

  /// Forgets the visitor: removes cookies, storage and caches of the component's web views, what `sendMessage` has
  /// queued, and the identifier of the page's guest. What the visitor allowed on this device stays. Close open chats
  /// before. `done` is called later, with a line for logs if something could not be removed.
  static void signOut(const std::function<void(const std::optional<std::string>& error)>& done = nullptr);

  /// Version of this component: "1.2.0" when `isShort`, else with the build number, "1.2.0.7"; empty when the
  /// component's bundle is missing.
  static std::string getSDKVersion(bool isShort);

  /// Sends the screen away, whether it was presented or pushed; one that is the root of its window only tells that it
  /// is closed. Does nothing while it does not show.
  void close();

  /// Removes cookies, storage and caches of every site from the component's web views, and tells the visitor that it is
  /// done, or that some of it could not be removed. Web views of the host keep theirs.
  void clearWebViewCache();

  /// Whether the page has been revealed.
  bool isLoaded() const;

  /// The chat page; made on first use.
  const std::shared_ptr<WebView>& webView();

  /// The placeholder that shows while the page loads; made on first use.
  const std::shared_ptr<WebView>& loadView();

  /// Picture of what showed when the session started or, if that was in another window, when the screen came up; null
  /// when there was none.
  const std::shared_ptr<View>& previousViewSnapshot() const;

  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewDidAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;
  void viewDidDisappear(bool animated) override;
  void didLeaveWindow() override;
  void viewDidLayoutSubviews() override;

  /// Leaves, as the page's "goBack" does.
  bool goBack() override;

  /// What the page posts.
  void didReceive(const ScriptMessage& message);

 private:
  static void configureOverlay();
  WebEngineHandlers pageHandlers();
  void observeApplication();
  void addRecordingView();
  void closeMicrophone();
  void loadPage();
  void closeWithoutPage();
  void hideHostChrome();
  void restoreHostChrome();

  std::unique_ptr<PageOrigins> origins_;
  bool hasAddress_ = true;  // unless its own session has none
  std::unique_ptr<ChatEvents> events_;
  std::unique_ptr<ChatWebViewHost> host_;
  std::unique_ptr<ChatNavigation> navigation_;
  std::unique_ptr<ChatPageRequests> pageRequests_;
  std::unique_ptr<ScriptMessageBridge> bridge_;
  std::unique_ptr<HostMessages> hostMessages_;
  std::unique_ptr<EdgePanBack> backGesture_;
  std::vector<Subscription> applicationObservers_;
  bool mustLoadPage_ = false;  // when it appears again, since the check failed
  std::vector<std::shared_ptr<View>> hiddenChrome_;
};

}  // namespace orivex

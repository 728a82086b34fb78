#include "orivex/sdk/OVKFApi.h"

#include "ChatEvents.h"
#include "ChatNavigation.h"
#include "ChatPageAddress.h"
#include "ChatPageRequests.h"
#include "ChatWebViewHost.h"
#include "EdgePanBack.h"
#include "HostMessages.h"
#include "PageOrigins.h"
#include "ScreenGuard.h"
#include "ScriptMessageBridge.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/models/MessageBody.h"
#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/Platform.h"
#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"
#include "orivex/platform/ports/Application.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/platform/ports/WebsiteDataStore.h"
#include "orivex/platform/ui/Window.h"
#include "orivex/session/OVKFApiManager.h"
#include "orivex/voice/RecordManager.h"

namespace orivex {
namespace {

constexpr double pageFailureSeconds = 2.0;
constexpr double cacheNoticeSeconds = 3.0;
constexpr double hostClosesSeconds = 1.0;

// The queue ends empty and the last element wins.
std::string drain(std::vector<std::shared_ptr<MessageBody>>& queue) {
  std::string payload;
  for (const auto& element : std::exchange(queue, {})) payload = element->getJsonString();
  return payload;
}

void removeWebsiteData(const std::function<void(const std::optional<Failure>&)>& done) {
  auto& dataStore = Platform::current().websiteDataStore;
  dataStore.fetchRecords([&dataStore, done](const auto& result) {
    if (const auto* failure = std::get_if<Failure>(&result)) {
      done(*failure);
    } else {
      dataStore.removeData(std::get<WebsiteDataStore::Records>(result), done);
    }
  });
}

}  // namespace

OVKFApi::OVKFApi() {
  origins_ = std::make_unique<PageOrigins>();
  events_ = std::make_unique<ChatEvents>(*this);
  host_ = std::make_unique<ChatWebViewHost>(
      *this, *events_, [this] { return pageHandlers(); },
      [this] {
        events_->revealed();
        hostMessages_->start();
      });
  navigation_ = std::make_unique<ChatNavigation>(*this, *host_, *origins_, *events_);
  pageRequests_ = std::make_unique<ChatPageRequests>(*this);
  bridge_ = std::make_unique<ScriptMessageBridge>(*this, *host_, *origins_);
  hostMessages_ = std::make_unique<HostMessages>(*this, *host_);
  backGesture_ = std::make_unique<EdgePanBack>(*this);
}

// A screen that never disappeared, for example with its window, is gone all the same.
OVKFApi::~OVKFApi() {
  closeMicrophone();
  events_->closed();
}

// What the page does goes to the part of the screen that serves it.
WebEngineHandlers OVKFApi::pageHandlers() {
  auto handlers = navigation_->handlers();
  handlers.scriptMessage = guarded(*this, [this](const ScriptMessage& message) { didReceive(message); });
  handlers.pageRequests = pageRequests_->handlers();
  handlers.pageRequests.filesOffered =
      guarded(*this, [this](const std::vector<std::string>& paths) { bridge_->attach(paths); });
  return handlers;
}

void OVKFApi::startSession(const std::string& host, const std::string& entryId, const std::string& appkey,
                           const std::shared_ptr<UserMappingModel>& user, const std::function<void()>& callBack) {
  if (!user) fatalError("OrivexSDK/OVKFApi", "startSession needs a user.");
  events_->sessionStarted();
  if (!user->deviceId || user->deviceId->empty()) user->deviceId = OVKFApiHelper::deviceIdentifier();

  auto& store = OVKFApiManager::shared();
  store.user = user;
  store.host = host;
  origins_->setServer(host);
  store.entryId = entryId;
  store.appKey = appkey;
  if (callBack) callBack();

  const auto window = firstWindow(Platform::current().application);
  backGesture_->takeSnapshot(window);

  const ChatPageAddress address{.host = store.host,
                                .entryId = entryId,
                                .appKey = appkey,
                                .user = *user,
                                .statusBarHeight = statusBarHeight(window.get()),
                                .bottomInset = window ? window->safeAreaInsets().bottom : 0,
                                .payload = drain(store.elements)};
  const auto text = address.text();
  log::debugPrint(text, log::Level::trace);  // with the visitor's token
  auto url = Url::parse(text);
  hasAddress_ = url.has_value();
  if (url) {
    store.instanceURL = std::move(url);
  } else {
    log::warning("The chat page address does not parse: " + address.fault());
  }
}

void OVKFApi::sendMessage(std::int64_t msgType, const std::shared_ptr<MessageBody>& msgBody) {
  if (!msgBody) fatalError("OrivexSDK/OVKFApi", "sendMessage needs a message body.");
  msgBody->msgType = msgType;
  OVKFApiManager::shared().elements.push_back(msgBody);
}

void OVKFApi::showMessage(std::int64_t msgType, const std::shared_ptr<MessageBody>& msgBody) {
  if (!msgBody) fatalError("OrivexSDK/OVKFApi", "showMessage needs a message body.");
  msgBody->msgType = msgType;
  if (auto json = msgBody->getJsonString(); !json.empty()) hostMessages_->add(std::move(json));
}

std::string OVKFApi::getSDKVersion(bool isShort) {
  return OVKFApiHelper::sdkVersion(isShort);
}

void OVKFApi::close() {
  closeScreenIfShown(*this);
}

void OVKFApi::signOut(const std::function<void(const std::optional<std::string>&)>& done) {
  auto& store = OVKFApiManager::shared();
  store.elements.clear();
  store.guestId = std::nullopt;
  removeWebsiteData([done](const std::optional<Failure>& failure) {
    if (failure) log::warning("Error clearing website data: " + failure->description);
    if (done) done(failure ? std::optional(failure->description) : std::nullopt);
  });
}

void OVKFApi::clearWebViewCache() {
  // A host may ask a screen for it that never shows.
  auto* const shownIn = window();
  Platform::current().progressOverlay.setWindow(shownIn ? shownIn->weak_from_this() : std::weak_ptr<Window>());
  const auto tell = [](const std::optional<Failure>& failure) {
    if (!failure) return OVKFApiHelper::showNotice(tr("缓存清理完成"), cacheNoticeSeconds);
    log::warning("Error clearing website data: " + failure->description);
    OVKFApiHelper::showMessage(tr("缓存清理失败"), cacheNoticeSeconds);
  };
  removeWebsiteData(tell);
}

bool OVKFApi::isLoaded() const {
  return host_->isLoaded();
}
const std::shared_ptr<WebView>& OVKFApi::webView() {
  return host_->webView();
}
const std::shared_ptr<WebView>& OVKFApi::loadView() {
  return host_->loadView();
}
const std::shared_ptr<View>& OVKFApi::previousViewSnapshot() const {
  return backGesture_->snapshot();
}

void OVKFApi::viewDidLoad() {
  ViewController::viewDidLoad();
  view()->setBackgroundColor(OVKFApiHelper::color("#FFFFFF"));
  setOverrideInterfaceStyle(InterfaceStyle::light);
  configureOverlay();
  observeApplication();
  backGesture_->install();
  view()->addSubview(webView());
  view()->addSubview(loadView());
  addRecordingView();
  loadPage();
  host_->observeUrl();
}

void OVKFApi::configureOverlay() {
  auto& overlay = Platform::current().progressOverlay;
  overlay.setMinimumSize({120, 120});
  overlay.setStyle(OverlayStyle::dark);
  overlay.setMask(OverlayMask::black);
  overlay.setMaximumDismissTime(10);
}

void OVKFApi::observeApplication() {
  auto& application = Platform::current().application;
  applicationObservers_.push_back(
      application.observe(ApplicationEvent::didBecomeActive, [] { log::debugPrint("App did become active"); }));
  applicationObservers_.push_back(application.observe(ApplicationEvent::willResignActive, [] {
    log::debugPrint("App will resign active");
    RecordManager::shared().closeMicrophone();
  }));
}

void OVKFApi::addRecordingView() {
  const auto& overlay = RecordManager::shared().recordingView();
  if (view()->hasSubview(*overlay)) return;
  const auto* const other = overlay->superview();
  if (other && other->isShowing() && !view()->isShowing()) return;  // this screen gets it when it comes up
  // A press of another chat screen, which loses the overlay, must not be recorded on this one.
  if (other) RecordManager::shared().closeMicrophone();
  overlay->setCenter(view()->center());
  view()->addSubview(overlay);
}

void OVKFApi::loadPage() {
  if (!hasAddress_) {  // the shared one is that of another session, with another visitor's token
    events_->failed(ChatFailure::Cause::badAddress);
    OVKFApiHelper::showMessage(tr("请求失败,请稍后重试"), pageFailureSeconds,
                               [this, screen = shared_from_this()] { closeWithoutPage(); });
    return;
  }
  const auto& address = OVKFApiManager::shared().instanceURL;
  if (!address) {
    fatalError("OrivexSDK/ChatManager:30",
               "instanceURL not set. Call setUrl() first. (OVKFApi::startSession sets it; call that before the screen "
               "shows.)");
  }
  OVKFApiHelper::checkPage(*address, guarded(*this, [this](const PageCheckOutcome& outcome) {
    if (const auto* request = std::get_if<UrlRequest>(&outcome)) return webView()->load(*request);
    const auto& failure = std::get<PageCheckFailure>(outcome);
    if (!view()->isShowing()) {
      mustLoadPage_ = true;
      return;
    }
    using Cause = ChatFailure::Cause;
    const auto cause = failure.status != 0 ? Cause::refused : failure.timedOut ? Cause::timedOut : Cause::unreachable;
    events_->failed(cause, failure.detail, failure.status);
    if (failure.message) {
      OVKFApiHelper::showMessage(view(), *failure.message, pageFailureSeconds,
                                 [this, screen = shared_from_this()] { closeWithoutPage(); });
    }
  }));
}

void OVKFApi::closeWithoutPage() {
  closeScreenIfShown(*this);
  mustLoadPage_ = true;
}

void OVKFApi::viewWillAppear(bool animated) {
  ViewController::viewWillAppear(animated);
  // What an earlier time on the display may have taken: another chat screen the overlay, a swipe the page.
  addRecordingView();
  backGesture_->reset();
  hideHostChrome();
  if (std::exchange(mustLoadPage_, false)) loadPage();
  host_->bringBack();
}

void OVKFApi::viewDidAppear(bool animated) {
  ViewController::viewDidAppear(animated);
  Platform::current().progressOverlay.bringTo(*view());
  events_->appeared();
}

void OVKFApi::viewWillDisappear(bool animated) {
  ViewController::viewWillDisappear(animated);
  closeMicrophone();
  if (const auto* const shownIn = window()) UploadManager::hideProgress(*shownIn);
  view()->endEditing();
  restoreHostChrome();
}

void OVKFApi::viewDidDisappear(bool animated) {
  ViewController::viewDidDisappear(animated);
  const auto* const navigation = navigationController();
  if (!window() || (navigation && !navigation->contains(*this))) events_->closed();
}

void OVKFApi::didLeaveWindow() {
  events_->closed();
}

void OVKFApi::closeMicrophone() {
  if (isViewLoaded()) RecordManager::shared().closeMicrophoneOf(*view());
}

void OVKFApi::hideHostChrome() {
  auto* const navigation = navigationController();
  if (!navigation) return;
  navigation->setNavigationBarTranslucent(false);
  navigation->setNavigationBarHidden(true);
  for (const auto& view : {navigation->toolbar(), navigation->hostTabBar()}) {
    // What the host itself had hidden must not appear when the chat goes.
    if (!view || view->isHidden()) continue;
    view->setHidden(true);
    hiddenChrome_.push_back(view);
  }
}

void OVKFApi::restoreHostChrome() {
  if (auto* const navigation = navigationController()) {
    navigation->setNavigationBarTranslucent(false);
    navigation->setNavigationBarHidden(false);
  }
  for (const auto& view : std::exchange(hiddenChrome_, {})) view->setHidden(false);
}

void OVKFApi::viewDidLayoutSubviews() {
  host_->layout();
  RecordManager::shared().recordingView()->setCenter(view()->center());
  backGesture_->layout();
}

bool OVKFApi::goBack() {
  closeScreen(*this, true);
  if (!isRoot()) return true;
  auto& queue = Platform::current().mainQueue;
  // Later, as other screens take their time to leave: the host may end this one at once.
  queue.async(guarded(*this, [this] { events_->closed(); }));
  // Where the host leaves it, for example in a wide window beside its own part, the visitor may want to go back again.
  queue.asyncAfter(hostClosesSeconds, guarded(*this, [this] {
                     if (view()->isShowing()) events_->appeared();
                   }));
  return true;
}

void OVKFApi::didReceive(const ScriptMessage& message) {
  bridge_->dispatch(message);
}

}  // namespace orivex

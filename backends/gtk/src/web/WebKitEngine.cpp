#include "WebKitEngine.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "../Contained.h"
#include "../FreeWith.h"
#include "../glib/GMemory.h"
#include "GlContextGuard.h"
#include "LightStyle.h"
#include "MessageLimit.h"
#include "TakenPointers.h"
#include "TouchPointers.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// The document itself stays still; what scrolls is inside it, as its author wants it.
constexpr const char* stillDocument = ":root { overflow: hidden !important; overscroll-behavior: none !important; }";

GRef<WebKitWebView> makeView(WebKitWebContext* context, WebKitNetworkSession* session,
                             WebKitUserContentManager* content) {
  guardGlContext();
  return GRef<WebKitWebView>::sink(
      WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session", session,
                                   "user-content-manager", content, nullptr)));
}

std::string tlsDescription(GTlsCertificateFlags errors) {
  const GCharPtr names(g_flags_to_string(G_TYPE_TLS_CERTIFICATE_FLAGS, errors));
  return std::string("the server's certificate is not accepted: ") + names.get();
}

// A navigation that another one replaced did not fail for the visitor.
bool isReplaced(const GError* error) {
  return g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
         g_error_matches(error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
}

using EvaluationCompletion = Once<void(std::optional<std::string>)>;

void evaluated(GObject* source, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<EvaluationCompletion> completion(static_cast<EvaluationCompletion*>(data));
  GError* failure = nullptr;
  const auto value =
      GRef<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &failure));
  const GErrorPtr error(failure);
  if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;  // the engine is gone
  contained([&] { std::move (*completion)(error ? std::optional<std::string>(error->message) : std::nullopt); });
}

// Marks a stretch in which WebKit may emit signals out of our own call.
class CallMark {
 public:
  explicit CallMark(bool& mark) : mark_(mark), before_(std::exchange(mark, true)) {}
  CallMark(const CallMark&) = delete;
  CallMark& operator=(const CallMark&) = delete;
  ~CallMark() { mark_ = before_; }

 private:
  bool& mark_;
  const bool before_;
};

}  // namespace

/// One message name with its signal.
class WebKitEngine::MessageChannel {
 public:
  MessageChannel(WebKitUserContentManager* content, std::string name, WebKitEngine& engine)
      : name_(std::move(name)), engine_(engine) {
    // Connected before the page can post: no first message is lost.
    received_ = SignalConnection::connect<&MessageChannel::received>(
        content, ("script-message-received::" + name_).c_str(), this);
    webkit_user_content_manager_register_script_message_handler(content, name_.c_str(), nullptr);
  }

  const std::string& name() const { return name_; }

 private:
  void received(WebKitUserContentManager* /*content*/, JSCValue* body) {
    const GCharPtr json(jsc_value_to_json(body, 0));  // undefined and functions have no JSON
    engine_.handlers_.scriptMessage({name_, json ? json.get() : "null"});
  }

  std::string name_;
  WebKitEngine& engine_;
  SignalConnection received_;
};

WebKitEngine::WebKitEngine(MainQueue& mainQueue, EngineStart& start, WebKitNetworkSession* session,
                           std::shared_ptr<WebProcessContext> context, std::shared_ptr<PageDownloads> downloads,
                           const WebEngineConfiguration& configuration, WebEngineHandlers handlers)
    : mainQueue_(mainQueue),
      start_(start),
      context_(std::move(context)),
      handlers_(std::move(handlers)),
      content_(GRef<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())),
      view_(makeView(context_->get(), session, content_.get())),
      cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())),
      limits_(view_.get()),
      backKeys_(view_.get()),
      dialogs_(view_.get(), mainQueue_, [this] { return isCovered(); }),
      requests_(view_.get(), session, std::move(downloads), mainQueue_, handlers_),
      hangs_(
          view_.get(), mainQueue_, [this] { return isCovered(); },
          [this] {
            if (const auto leave = handlers_.pageRequests.leave) leave();
          }),
      network_(view_.get(), [this] { networkLost(); }) {
  auto* const settings = webkit_web_view_get_settings(view_.get());
  webkit_settings_set_javascript_can_open_windows_automatically(settings,
                                                                configuration.javaScriptCanOpenWindowsAutomatically);
  registerMessages(configuration.scriptMessageNames);
  addMessageLimit(content_.get(), configuration.scriptMessageNames);
  addLightScript(content_.get());
  addLightStyle(content_.get());
  addTouchPointersScript(content_.get());
  addTakenPointersScript(content_.get());
  addUserScripts(configuration.userScripts);
  connectSignals();
}

WebKitEngine::~WebKitEngine() {
  signals_.clear();
  g_cancellable_cancel(cancellable_.get());
  for (const auto& channel : channels_) {
    webkit_user_content_manager_unregister_script_message_handler(content_.get(), channel->name().c_str(), nullptr);
  }
}

void WebKitEngine::shownBy(View& view) {
  shownBy_ = view.weak_from_this();
  leaving_ = view.observeLeaving([this] {
    dialogs_.dismiss();
    hangs_.postpone();
  });
}

bool WebKitEngine::isCovered() const {
  const auto view = shownBy_.lock();
  return view && !view->isShowing();
}

void WebKitEngine::registerMessages(const std::vector<std::string>& names) {
  for (const auto& name : names) channels_.push_back(std::make_unique<MessageChannel>(content_.get(), name, *this));
}

void WebKitEngine::addUserScripts(const std::vector<UserScript>& scripts) {
  for (const auto& script : scripts) {
    const std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>> made(webkit_user_script_new(
        script.source.c_str(),
        script.mainFrameOnly ? WEBKIT_USER_CONTENT_INJECT_TOP_FRAME : WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
        script.injectionTime == UserScript::InjectionTime::documentStart ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                                                                         : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END,
        nullptr, nullptr));
    webkit_user_content_manager_add_script(content_.get(), made.get());
  }
}

void WebKitEngine::connectSignals() {
  auto* const view = view_.get();
  signals_.push_back(SignalConnection::connect<&WebKitEngine::loadChanged>(view, "load-changed", this));
  signals_.push_back(SignalConnection::connect<&WebKitEngine::loadFailed>(view, "load-failed", this));
  signals_.push_back(
      SignalConnection::connect<&WebKitEngine::loadFailedWithTlsErrors>(view, "load-failed-with-tls-errors", this));
  signals_.push_back(SignalConnection::connect<&WebKitEngine::decidePolicy>(view, "decide-policy", this));
  signals_.push_back(SignalConnection::connect<&WebKitEngine::processTerminated>(view, "web-process-terminated", this));
  signals_.push_back(SignalConnection::connect<&WebKitEngine::uriChanged>(view, "notify::uri", this));
}

template <class Function>
void WebKitEngine::tell(Function call) {
  if (inCall_) {
    mainQueue_.async(alive_.guard(std::move(call)));
  } else {
    call();
  }
}

void WebKitEngine::whenStarted(Start call) {
  waiting_.push_back(std::move(call));
  if (waiting_.size() > 1) return;
  start_.look(alive_.guard([this](const std::optional<std::string>& failure) {
    if (failure) log::print("No page can be shown: " + *failure);
    // Each on its own, as the handlers may end this engine.
    for (auto& waiting : std::exchange(waiting_, {})) {
      mainQueue_.async(alive_.guard([call = std::move(waiting), failure]() mutable { std::move(call)(failure); }));
    }
  }));
}

void WebKitEngine::load(const UrlRequest& request) {
  uncommitted_ = GRef<WebKitURIRequest>::adopt(webkit_uri_request_new(request.url.absoluteString().c_str()));
  if (SoupMessageHeaders* const headers = webkit_uri_request_get_http_headers(uncommitted_.get())) {
    for (const auto& header : request.headers) {
      soup_message_headers_replace(headers, header.name.c_str(), header.value.c_str());
    }
  }
  reload();
}

void WebKitEngine::loadFile(const std::string& path, const std::string& /*readAccessPath*/) {
  // A local page of WebKitGTK reads no other local file unless a setting that stays off allows it.
  load({Url::fromFilePath(path), 0, {}});
}

void WebKitEngine::reload() {
  if (!start_.isPossible()) {
    return whenStarted([this](const std::optional<std::string>& failure) {
      if (failure) return handlers_.didFailProvisionalNavigation(*failure);
      reload();
    });
  }
  const CallMark mark(inCall_);
  // WebKit reloads what has come; what died on its way is nothing to it.
  if (uncommitted_) {
    webkit_web_view_load_request(view_.get(), uncommitted_.get());
  } else {
    webkit_web_view_reload(view_.get());
  }
}

void WebKitEngine::evaluate(const std::string& script, EvaluationCompletion completion) {
  if (!start_.isPossible()) {
    return whenStarted([this, script, completion = std::move(completion)](const auto& failure) mutable {
      if (failure) return std::move(completion)(failure);
      evaluate(script, std::move(completion));
    });
  }
  const CallMark mark(inCall_);
  // Without a callback WebKit does not bring the result over.
  const GAsyncReadyCallback callback = completion ? evaluated : nullptr;
  auto pending = completion ? std::make_unique<EvaluationCompletion>(std::move(completion)) : nullptr;
  webkit_web_view_evaluate_javascript(view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr, nullptr,
                                      cancellable_.get(), callback, pending.release());
}

void WebKitEngine::setCustomUserAgent(const std::string& userAgent) {
  context_->setUserAgent(userAgent);
}

void WebKitEngine::setScrollSettings(const ScrollSettings& settings) {
  webkit_user_content_manager_remove_all_style_sheets(content_.get());
  addLightStyle(content_.get());
  if (!settings.scrollEnabled) addStyle(content_.get(), stillDocument, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
  if (const auto& color = settings.backgroundColor) {
    const GdkRGBA shown{static_cast<float>(color->red), static_cast<float>(color->green),
                        static_cast<float>(color->blue), static_cast<float>(color->alpha)};
    webkit_web_view_set_background_color(view_.get(), &shown);
  }
}

void WebKitEngine::loadChanged(WebKitWebView* /*view*/, WebKitLoadEvent event) {
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      loadFailed_ = false;
      tell([this] { handlers_.didStartProvisionalNavigation(); });
      break;
    case WEBKIT_LOAD_REDIRECTED:
      tell([this] { handlers_.didReceiveServerRedirect(); });
      break;
    case WEBKIT_LOAD_COMMITTED:
      committed();
      break;
    case WEBKIT_LOAD_FINISHED:
      // WebKitGTK ends a failed load with this event too.
      if (!loadFailed_) tell([this] { handlers_.didFinishNavigation(); });
      break;
  }
}

void WebKitEngine::committed() {
  const char* const uri = webkit_web_view_get_uri(view_.get());
  documentUrl_ = uri ? uri : "";
  uncommitted_ = nullptr;
  requests_.documentReplaced();
  // To WebKit the address never changed while the process was gone. The handler may end this engine.
  const bool isBack = std::exchange(processGone_, false);
  auto tellAddress = alive_.guard([this] { tellUri(); });
  tell([this] { handlers_.didCommitNavigation(); });
  if (isBack) tellAddress();
}

gboolean WebKitEngine::loadFailed(WebKitWebView* /*view*/, WebKitLoadEvent event, const char* /*uri*/, GError* error) {
  loadFailed_ = true;
  const std::string description = error->message;
  const bool provisional = event == WEBKIT_LOAD_STARTED || event == WEBKIT_LOAD_REDIRECTED;
  if (provisional && !isReplaced(error)) {
    tell([this, description] { handlers_.didFailProvisionalNavigation(description); });
  } else {
    tell([this, description] { handlers_.didFailNavigation(description); });
  }
  return TRUE;  // no error page of WebKit's own
}

gboolean WebKitEngine::loadFailedWithTlsErrors(WebKitWebView* /*view*/, const char* /*uri*/,
                                               GTlsCertificate* /*certificate*/, GTlsCertificateFlags errors) {
  loadFailed_ = true;
  tell([this, errors] { handlers_.didFailProvisionalNavigation(tlsDescription(errors)); });
  return TRUE;
}

NavigationPolicy WebKitEngine::policyFor(WebKitNavigationAction* action) {
  const char* const uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const auto decide = handlers_.decideNavigationAction;  // kept, should it end this engine
  return decide(uri ? std::optional<std::string>(uri) : std::nullopt);
}

gboolean WebKitEngine::decidePolicy(WebKitWebView* /*view*/, WebKitPolicyDecision* decision,
                                    WebKitPolicyDecisionType type) {
  auto policy = NavigationPolicy::cancel;
  if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    const auto decide = handlers_.decideNavigationResponse;
    policy = decide();
    if (policy == NavigationPolicy::allow) {
      return PageRequests::saveUnshowable(WEBKIT_RESPONSE_POLICY_DECISION(decision));
    }
  } else {
    auto* const action =
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) {
      requests_.openWindow(action);
    } else {
      requests_.navigates(action);
      policy = policyFor(action);
    }
  }
  if (policy == NavigationPolicy::allow) return FALSE;
  webkit_policy_decision_ignore(decision);
  return TRUE;
}

void WebKitEngine::processTerminated(WebKitWebView* /*view*/, WebKitWebProcessTerminationReason reason) {
  processGone_ = true;
  dialogs_.dismiss();
  log::print("The page's process ended, reason " + std::to_string(static_cast<int>(reason)));
  tell([this] { handlers_.urlChanged(std::nullopt); });
}

// To the visitor a page without its scripts is as lost as one without its process.
void WebKitEngine::networkLost() {
  loadFailed_ = true;
  processGone_ = true;
  log::print("The network process ended while a page was loading");
  mainQueue_.async(alive_.guard([this] { handlers_.urlChanged(std::nullopt); }));
}

void WebKitEngine::uriChanged(WebKitWebView* /*view*/, GParamSpec* /*property*/) {
  tellUri();
}

void WebKitEngine::tellUri() {
  const char* const uri = webkit_web_view_get_uri(view_.get());
  if (!uri || !*uri) return;
  tell([this, address = std::optional<std::string>(uri)] { handlers_.urlChanged(address); });
}

std::unique_ptr<WebEngine> WebKitEngineFactory::make(const WebEngineConfiguration& configuration,
                                                     WebEngineHandlers handlers) {
  auto context = context_.lock();
  if (!context) context_ = context = std::make_shared<WebProcessContext>(moduleFolder_);
  return std::make_unique<WebKitEngine>(mainQueue_, start_, session_.get(), std::move(context), downloads_,
                                        configuration, std::move(handlers));
}

}  // namespace orivex::gtk

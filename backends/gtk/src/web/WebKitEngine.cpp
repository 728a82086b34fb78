#include "WebKitEngine.h"

#include <utility>

#include "../glib/AsyncCallback.h"
#include "../glib/GMemory.h"
#include "../ui/Widgets.h"
#include "GlContextGuard.h"
#include "PageInput.h"
#include "PageLimits.h"
#include "PageScripts.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

// Seconds for a page's process to say something of what it is asked to load; a frozen one never does.
constexpr double patience = 10;

// Seconds after a script without a result in which WebKit tells that it was the process that ended.
constexpr double deathDelay = 0.1;

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

// WebKit names neither the domain nor the code in its headers.
bool isInternal(const GError* error) {
  return g_error_matches(error, g_quark_from_static_string("WebKitErrorDomain"), 300);
}

}  // namespace

WebKitEngine::WebKitEngine(MainQueue& mainQueue, EngineStart& start, WebKitNetworkSession* session,
                           std::shared_ptr<WebProcessContext> context, std::shared_ptr<PageDownloads> downloads,
                           const WebEngineConfiguration& configuration, WebEngineHandlers handlers)
    : mainQueue_(mainQueue),
      start_(start),
      context_(std::move(context)),
      handlers_(std::move(handlers)),
      userScripts_(configuration.userScripts),
      content_(GRef<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())),
      view_(makeView(context_->get(), session, content_.get())),
      cancellable_(GRef<GCancellable>::adopt(g_cancellable_new())),
      limits_(limitPage(view_.get())),
      backKeys_(addBackKeys(view_.get())),
      dialogs_(view_.get(), mainQueue_, [this] { return isCovered(); }),
      requests_(view_.get(), session, std::move(downloads), mainQueue_, handlers_),
      hangs_(
          view_.get(), mainQueue_, [this] { return isCovered(); }, handlers_.pageRequests.leave),
      offered_(view_.get(), handlers_.pageRequests.filesOffered),
      accessible_(view_.get(), mainQueue_) {
  setAccessibleLabel(widget(), tr("聊天"));
  auto* const settings = webkit_web_view_get_settings(view_.get());
  webkit_settings_set_javascript_can_open_windows_automatically(settings,
                                                                configuration.javaScriptCanOpenWindowsAutomatically);
  webkit_settings_set_enable_developer_extras(settings, configuration.inspectable);
  for (const auto& name : configuration.scriptMessageNames) registerMessage(name);
  addScripts(configuration);
  connectSignals();
  // A press on a page that is not loaded yet would have WebKit start its process, whether that is possible or not.
  gtk_widget_set_can_target(widget(), start_.isPossible());
}

WebKitEngine::~WebKitEngine() {
  signals_.disconnect();
  resources_.disconnect();
  g_cancellable_cancel(cancellable_.get());
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

void WebKitEngine::registerMessage(const std::string& name) {
  // Connected before the page can post: no first message is lost.
  signals_.add(content_.get(), ("script-message-received::" + name).c_str(), [this, name](JSCValue* body) {
    const GCharPtr json(jsc_value_to_json(body, 0));  // undefined and functions have no JSON
    handlers_.scriptMessage({name, json ? json.get() : "null"});
  });
  webkit_user_content_manager_register_script_message_handler(content_.get(), name.c_str(), nullptr);
}

void WebKitEngine::addScripts(const WebEngineConfiguration& configuration) {
  auto* const content = content_.get();
  addMessageLimit(content, configuration.scriptMessageNames);
  addLightScript(content);
  addLightStyle(content);
  addTouchPointers(content);
  addTakenPointers(content);
  addUserScripts({});
}

void WebKitEngine::addUserScripts(const std::vector<std::string>& origins) {
  for (const auto& script : userScripts_) addedScripts_.push_back(addUserScript(content_.get(), script, origins));
}

void WebKitEngine::limitUserScripts(const std::vector<std::string>& origins) {
  for (const auto& script : addedScripts_) webkit_user_content_manager_remove_script(content_.get(), script.get());
  addedScripts_.clear();
  if (!origins.empty()) addUserScripts(origins);
}

void WebKitEngine::connectSignals() {
  auto* const view = view_.get();
  signals_.add(view, "load-changed", [this](WebKitLoadEvent event) { loadChanged(event); });
  signals_.add(view, "load-failed", [this](WebKitLoadEvent event, const char* /*uri*/, GError* error) {
    const bool isProvisional = event == WEBKIT_LOAD_STARTED || event == WEBKIT_LOAD_REDIRECTED;
    loadFailed(isProvisional && !isReplaced(error), error->message);
    return true;  // no error page of WebKit's own
  });
  signals_.add(view, "load-failed-with-tls-errors",
               [this](const char* /*uri*/, GTlsCertificate* /*certificate*/, GTlsCertificateFlags errors) {
                 loadFailed(true, tlsDescription(errors));
                 return true;
               });
  signals_.add(view, "decide-policy", [this](WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
    return decidePolicy(decision, type);
  });
  signals_.add(view, "web-process-terminated", [this](WebKitWebProcessTerminationReason reason) {
    ++deaths_;
    dialogs_.dismiss();
    pageLost("The page's process ended, reason " + std::to_string(static_cast<int>(reason)));
  });
  signals_.add(view, "resource-load-started", [this](WebKitWebResource* resource) { watchResource(resource); });
  signals_.add(view, "notify::uri", [this] { uriChanged(); });
}

template <class Function>
void WebKitEngine::emit(Function call) {
  if (inCall_) {
    mainQueue_.async(alive_.guard(std::move(call)));
  } else {
    call();
  }
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
    return start_.check(alive_.guard([this](const std::optional<std::string>& failure) {
      if (failure) return handlers_.didFailProvisionalNavigation(*failure);
      reload();
    }));
  }
  gtk_widget_set_can_target(widget(), TRUE);
  inCall_ = true;
  // WebKit reloads what has come; what died on its way is nothing to it.
  if (uncommitted_) {
    webkit_web_view_load_request(view_.get(), uncommitted_.get());
  } else {
    webkit_web_view_reload(view_.get());
  }
  inCall_ = false;
  isHeard_ = false;
  mainQueue_.asyncAfter(patience, alive_.guard([this, request = ++request_] {
    if (request != request_ || isHeard_) return;
    handlers_.didFailProvisionalNavigation("The page's process does not answer");
  }));
}

void WebKitEngine::evaluate(const std::string& script, Once<void(std::optional<std::string>)> completion) {
  if (!start_.isPossible()) {
    return start_.check(alive_.guard([this, script, completion = std::move(completion)](const auto& failure) mutable {
      if (failure) return std::move(completion)(failure);
      evaluate(script, std::move(completion));
    }));
  }
  AsyncCallback evaluated{};  // without one WebKit does not bring the result over
  if (completion) {
    evaluated = asyncCallback(
        [this, deaths = deaths_, completion = std::move(completion)](GObject* view, GAsyncResult* result) mutable {
          GError* raised = nullptr;
          const auto value =
              GRef<JSCValue>::adopt(webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &raised));
          const GErrorPtr error(raised);
          if (g_error_matches(raised, G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;  // the engine is gone
          if (!error) return std::move(completion)(std::nullopt);
          const bool hasThrown = raised->code != WEBKIT_JAVASCRIPT_ERROR_INVALID_RESULT;
          if (hasThrown) return std::move(completion)(error->message);
          mainQueue_.asyncAfter(deathDelay, alive_.guard([this, deaths, message = std::string(error->message),
                                                          completion = std::move(completion)]() mutable {
            std::move(completion)(deaths == deaths_ ? message : std::string(processGone));
          }));
        });
  }
  webkit_web_view_evaluate_javascript(view_.get(), script.data(), static_cast<gssize>(script.size()), nullptr, nullptr,
                                      cancellable_.get(), evaluated.function, evaluated.data);
}

void WebKitEngine::endProcess() {
  signals_.disconnect();
  webkit_web_view_terminate_web_process(view_.get());
}

void WebKitEngine::setCustomUserAgent(const std::string& userAgent) {
  context_->setUserAgent(userAgent);
}

void WebKitEngine::setScrollSettings(const ScrollSettings& settings) {
  webkit_user_content_manager_remove_all_style_sheets(content_.get());
  addLightStyle(content_.get());
  if (!settings.scrollEnabled) addPageStyle(content_.get(), stillDocument, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
  if (const auto& color = settings.backgroundColor) {
    const GdkRGBA shown{static_cast<float>(color->red), static_cast<float>(color->green),
                        static_cast<float>(color->blue), static_cast<float>(color->alpha)};
    webkit_web_view_set_background_color(view_.get(), &shown);
  }
}

void WebKitEngine::loadChanged(WebKitLoadEvent event) {
  isHeard_ = true;
  loadsResources_ = event == WEBKIT_LOAD_COMMITTED;
  if (!loadsResources_) resources_.disconnect();
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      loadFailed_ = false;
      emit([this] { handlers_.didStartProvisionalNavigation(); });
      break;
    case WEBKIT_LOAD_REDIRECTED:
      emit([this] { handlers_.didReceiveServerRedirect(); });
      break;
    case WEBKIT_LOAD_COMMITTED:
      committed();
      break;
    case WEBKIT_LOAD_FINISHED:
      // WebKitGTK ends a failed load with this event too.
      if (!loadFailed_) emit([this] { handlers_.didFinishNavigation(); });
      break;
  }
}

void WebKitEngine::committed() {
  const char* const uri = webkit_web_view_get_uri(view_.get());
  documentUrl_ = uri ? uri : "";
  uncommitted_ = nullptr;
  requests_.documentReplaced();
  // To WebKit the address never changed while the process was gone. The handler may end this engine.
  const bool isBack = std::exchange(pageLost_, false);
  auto reportAddress = alive_.guard([this] { uriChanged(); });
  emit([this] { handlers_.didCommitNavigation(); });
  if (isBack) reportAddress();
}

void WebKitEngine::loadFailed(bool isProvisional, const std::string& description) {
  loadFailed_ = true;
  emit([this, isProvisional, description] {
    (isProvisional ? handlers_.didFailProvisionalNavigation : handlers_.didFailNavigation)(description);
  });
}

bool WebKitEngine::decidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
  auto policy = NavigationPolicy::cancel;
  // The handlers are copied, as each may end this engine.
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
      const char* const uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
      const auto decide = handlers_.decideNavigationAction;
      policy = decide(uri ? std::optional<std::string>(uri) : std::nullopt);
    }
  }
  if (policy == NavigationPolicy::allow) return false;  // it is still to start
  isHeard_ = true;
  webkit_policy_decision_ignore(decision);
  return true;
}

void WebKitEngine::pageLost(const std::string& reason) {
  pageLost_ = true;
  log::warning(reason);
  mainQueue_.async(alive_.guard([this] { handlers_.urlChanged(std::nullopt); }));
}

// When the network process is lost while a page loads, what the page still waits for fails with an internal error, and
// the load then ends as if nothing had happened. To the visitor a page without its scripts is as lost as one without
// its process.
void WebKitEngine::watchResource(WebKitWebResource* resource) {
  if (!loadsResources_) return;
  resources_.add(resource, "failed", [this](GError* error) {
    if (!loadsResources_ || !isInternal(error)) return;
    loadsResources_ = false;
    loadFailed_ = true;
    pageLost("The network process ended while a page was loading");
  });
}

void WebKitEngine::uriChanged() {
  const char* const uri = webkit_web_view_get_uri(view_.get());
  if (!uri || !*uri) return;
  emit([this, address = std::optional<std::string>(uri)] { handlers_.urlChanged(address); });
}

std::unique_ptr<WebEngine> WebKitEngineFactory::make(const WebEngineConfiguration& configuration,
                                                     WebEngineHandlers handlers) {
  auto context = context_.lock();
  if (!context) context_ = context = std::make_shared<WebProcessContext>(moduleFolder_);
  return std::make_unique<WebKitEngine>(mainQueue_, start_, session_.get(), std::move(context), downloads_,
                                        configuration, std::move(handlers));
}

}  // namespace orivex::gtk

#pragma once

#include <memory>
#include <string>
#include <vector>

#include <webkit/webkit.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "AccessiblePage.h"
#include "EngineStart.h"
#include "HangWatch.h"
#include "OfferedFiles.h"
#include "PageDownloads.h"
#include "PageRequests.h"
#include "PageScripts.h"
#include "ScriptDialogs.h"
#include "WebSession.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/WebEngine.h"
#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// One WebKitWebView. Its process ends with it.
class WebKitEngine final : public WebEngine {
 public:
  WebKitEngine(MainQueue& mainQueue, EngineStart& start, WebKitNetworkSession* session,
               std::shared_ptr<WebProcessContext> context, std::shared_ptr<PageDownloads> downloads,
               const WebEngineConfiguration& configuration, WebEngineHandlers handlers);
  ~WebKitEngine() override;

  GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

  /// The view in which the page shows: while its screen does not, the page asks the visitor nothing.
  void shownBy(View& view);

  void load(const UrlRequest& request) override;
  void loadFile(const std::string& path, const std::string& readAccessPath) override;
  void reload() override;
  void evaluate(const std::string& script, Once<void(std::optional<std::string> error)> completion) override;
  std::optional<std::string> documentUrl() const override { return documentUrl_; }
  void limitUserScripts(const std::vector<std::string>& origins) override;
  void endProcess() override;
  void setCustomUserAgent(const std::string& userAgent) override;
  void setScrollSettings(const ScrollSettings& settings) override;

 private:
  bool isCovered() const;
  void registerMessage(const std::string& name);
  void addScripts(const WebEngineConfiguration& configuration);
  void addUserScripts(const std::vector<std::string>& origins);
  void connectSignals();

  void loadChanged(WebKitLoadEvent event);
  void committed();
  void loadFailed(bool isProvisional, const std::string& description);
  bool decidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
  void pageLost(const std::string& reason);
  void watchResource(WebKitWebResource* resource);
  void uriChanged();

  /// Runs `call`, now or, while a call into this engine is under way, right after it.
  template <class Function>
  void emit(Function call);

  MainQueue& mainQueue_;
  EngineStart& start_;
  const std::shared_ptr<WebProcessContext> context_;
  WebEngineHandlers handlers_;
  const std::vector<std::string> userScripts_;
  std::vector<AddedScript> addedScripts_;  // the user scripts as the pages know them
  GRef<WebKitUserContentManager> content_;
  GRef<WebKitWebView> view_;
  std::weak_ptr<const View> shownBy_;
  Subscription leaving_;
  GRef<WebKitURIRequest> uncommitted_;  // what was asked for last, until it commits
  GRef<GCancellable> cancellable_;
  SignalConnections limits_;
  SignalConnection backKeys_;
  ScriptDialogs dialogs_;
  PageRequests requests_;
  HangWatch hangs_;
  OfferedFiles offered_;
  AccessiblePage accessible_;
  SignalConnections signals_;
  SignalConnections resources_;
  std::optional<std::string> documentUrl_;
  bool inCall_ = false;
  bool loadsResources_ = false;  // a document has come and waits for them
  bool loadFailed_ = false;
  unsigned request_ = 0;  // counts what was asked for
  bool isHeard_ = false;  // the page's process has answered what was asked for last
  bool pageLost_ = false;
  int deaths_ = 0;  // of the page's process
  Alive alive_;
};

/// Makes engines that share one network session: cookies, storage and caches.
class WebKitEngineFactory final : public WebEngineFactory {
 public:
  /// `moduleFolder` holds the module for the pages' processes; see `WebProcessContext`.
  WebKitEngineFactory(MainQueue& mainQueue, GRef<WebKitNetworkSession> session, const std::string& moduleFolder)
      : mainQueue_(mainQueue), session_(std::move(session)), moduleFolder_(moduleFolder) {}

  [[nodiscard]] std::unique_ptr<WebEngine> make(const WebEngineConfiguration& configuration,
                                                WebEngineHandlers handlers) override;

 private:
  MainQueue& mainQueue_;
  EngineStart start_{mainQueue_};
  GRef<WebKitNetworkSession> session_;
  const std::string moduleFolder_;
  const std::shared_ptr<PageDownloads> downloads_ = std::make_shared<PageDownloads>();
  // Ends with the last page: with it goes the process that WebKit keeps ready for a next one.
  std::weak_ptr<WebProcessContext> context_;
};

}  // namespace orivex::gtk

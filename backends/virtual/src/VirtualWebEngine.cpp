#include "orivex/testing/VirtualWebEngine.h"

#include <algorithm>
#include <utility>

#include "orivex/platform/base/Log.h"
#include "orivex/testing/VirtualMainQueue.h"

namespace orivex::testing {
namespace {

template <class... Parameters, class... Arguments>
bool isAllowed(const std::function<NavigationPolicy(Parameters...)>& handler, Arguments&&... arguments) {
  return !handler || handler(std::forward<Arguments>(arguments)...) == NavigationPolicy::allow;
}

}  // namespace

/// The answer to a file input. One that is never given counts as cancelled.
class VirtualWebEngine::FileAnswer {
 public:
  explicit FileAnswer(std::weak_ptr<Page> page) : page_(std::move(page)) {}
  FileAnswer(const FileAnswer&) = delete;
  FileAnswer& operator=(const FileAnswer&) = delete;
  ~FileAnswer() { answer({}); }

  void answer(std::vector<std::string> paths) {
    if (const auto page = std::exchange(page_, {}).lock()) page->chosenFiles = std::move(paths);
  }

 private:
  std::weak_ptr<Page> page_;
};

VirtualWebEngine::VirtualWebEngine(const std::shared_ptr<Registry>& registry, MainQueue& queue,
                                   WebEngineConfiguration configuration, WebEngineHandlers handlers)
    : registry_(registry), queue_(queue), configuration_(std::move(configuration)) {
  page_->handlers = std::move(handlers);
  registry->engines.push_back(this);
}

VirtualWebEngine::~VirtualWebEngine() {
  page_->ended = true;
  if (const auto registry = registry_.lock()) std::erase(registry->engines, this);
}

void VirtualWebEngine::load(const UrlRequest& request) {
  requireMainThread(queue_, "WebEngine::load");
  loads_.push_back(request);
  requestedUrl_ = request.url.absoluteString();
  startLoading();
}

void VirtualWebEngine::loadFile(const std::string& path, const std::string& readAccessPath) {
  requireMainThread(queue_, "WebEngine::loadFile");
  fileLoads_.push_back({path, readAccessPath});
  requestedUrl_ = Url::fromFilePath(path).absoluteString();
  startLoading();
}

void VirtualWebEngine::reload() {
  requireMainThread(queue_, "WebEngine::reload");
  ++reloadCount_;
  if (requestedUrl_) startLoading();
}

void VirtualWebEngine::startLoading() {
  processAlive_ = true;
  queue_.async(alive_.guard([this] {
    const auto registry = registry_.lock();
    if (!registry || !registry->loader) return;
    const auto play = registry->loader;  // it may set another one
    play(*this);
  }));
}

void VirtualWebEngine::evaluate(const std::string& script, Once<void(std::optional<std::string> error)> completion) {
  requireMainThread(queue_, "WebEngine::evaluate");
  scripts_.push_back(script);
  auto error = std::exchange(nextEvaluationError_, std::nullopt);
  if (!processAlive_) error = processGone;
  queue_.async(alive_.guard(
      [this, script, process = page_->process, error = std::move(error), completion = std::move(completion)]() mutable {
        const std::weak_ptr<Page> life = page_;
        if (!error && page_->process == process) error = run(script);
        // The page may have closed the screen, and with it this engine, in reaction.
        if (life.expired()) return;
        if (page_->process == process) return std::move(completion)(std::move(error));
        queue_.async(alive_.guard(
            [completion = std::move(completion)]() mutable { std::move(completion)(std::string(processGone)); }));
      }));
}

std::optional<std::string> VirtualWebEngine::run(const std::string& script) {
  const auto registry = registry_.lock();
  if (!registry || !registry->scriptRunner) return std::nullopt;
  const auto runner = registry->scriptRunner;  // it may set another one
  return runner(*this, script);
}

void VirtualWebEngine::limitUserScripts(const std::vector<std::string>& origins) {
  requireMainThread(queue_, "WebEngine::limitUserScripts");
  userScriptOrigins_ = origins;
}

void VirtualWebEngine::setCustomUserAgent(const std::string& userAgent) {
  requireMainThread(queue_, "WebEngine::setCustomUserAgent");
  userAgent_ = userAgent;
}

void VirtualWebEngine::setScrollSettings(const ScrollSettings& settings) {
  requireMainThread(queue_, "WebEngine::setScrollSettings");
  scrolling_ = settings;
}

template <class Event>
void VirtualWebEngine::queueEvent(Event event) {
  if (!processAlive_) return;
  queue_.async([weak = std::weak_ptr<Page>(page_), process = page_->process, event = std::move(event)] {
    const auto page = weak.lock();
    if (page && page->process == process) event(*page);
  });
}

template <class... Parameters, class... Arguments>
void VirtualWebEngine::notify(Page& page, const std::function<void(Parameters...)>& handler, Arguments&&... arguments) {
  if (handler && !page.ended) handler(std::forward<Arguments>(arguments)...);
}

void VirtualWebEngine::setUrl(Page& page, const std::optional<std::string>& url) {
  if (page.url == url) return;
  page.url = url;
  notify(page, page.handlers.urlChanged, url);
}

void VirtualWebEngine::post(const std::string& name, const std::string& body) {
  const auto& names = configuration_.scriptMessageNames;
  if (std::find(names.begin(), names.end(), name) == names.end()) {
    fatalError("OrivexSDK/VirtualWebEngine", "no script message handler is registered as " + name);
  }
  queueEvent([message = ScriptMessage{name, body}](Page& page) { notify(page, page.handlers.scriptMessage, message); });
}

void VirtualWebEngine::startProvisional() {
  queueEvent([url = requestedUrl_](Page& page) {
    page.refused = !isAllowed(page.handlers.decideNavigationAction, url);
    if (!page.refused) notify(page, page.handlers.didStartProvisionalNavigation);
  });
}

void VirtualWebEngine::redirect(const std::string& url) {
  queueEvent([url](Page& page) {
    if (page.refused) return;
    page.refused = !isAllowed(page.handlers.decideNavigationAction, url);
    if (!page.refused) notify(page, page.handlers.didReceiveServerRedirect);
  });
}

void VirtualWebEngine::commit(const std::string& url) {
  queueEvent([url](Page& page) {
    if (page.refused) return;
    page.refused = !isAllowed(page.handlers.decideNavigationResponse);
    if (page.refused) {
      notify(page, page.handlers.didFailProvisionalNavigation, "The response was refused");
    } else {
      page.documentUrl = url;
      notify(page, page.handlers.didCommitNavigation);
      setUrl(page, url);
    }
  });
}

void VirtualWebEngine::finish() {
  queueEvent([](Page& page) {
    if (!page.refused) notify(page, page.handlers.didFinishNavigation);
  });
}

void VirtualWebEngine::failProvisional(const std::string& error) {
  queueEvent([error](Page& page) {
    if (!page.refused) notify(page, page.handlers.didFailProvisionalNavigation, error);
  });
}

void VirtualWebEngine::fail(const std::string& error) {
  queueEvent([error](Page& page) {
    if (!page.refused) notify(page, page.handlers.didFailNavigation, error);
  });
}

void VirtualWebEngine::completeLoad() {
  startProvisional();
  commit(requestedUrl_.value_or("about:blank"));
  finish();
}

void VirtualWebEngine::changeUrl(const std::string& url) {
  queueEvent([url](Page& page) { setUrl(page, url); });
}

void VirtualWebEngine::openWindow(const std::string& url) {
  queueEvent([url](Page& page) {
    if (isAllowed(page.handlers.decideNavigationAction, std::optional(url))) {
      notify(page, page.handlers.pageRequests.openWindow, url);
    }
  });
}

void VirtualWebEngine::requestFiles(const FileChooserRequest& request) {
  queueEvent([request, weak = std::weak_ptr<Page>(page_)](Page& page) {
    page.chosenFiles.reset();
    notify(page, page.handlers.pageRequests.chooseFiles, request,
           [answer = std::make_unique<FileAnswer>(weak)](std::vector<std::string> paths) {
             answer->answer(std::move(paths));
           });
  });
}

void VirtualWebEngine::offerFiles(const std::vector<std::string>& paths) {
  queueEvent([paths](Page& page) { notify(page, page.handlers.pageRequests.filesOffered, paths); });
}

void VirtualWebEngine::endDownload(const EndedDownload& download) {
  queueEvent([download](Page& page) { notify(page, page.handlers.pageRequests.downloadEnded, download); });
}

void VirtualWebEngine::leave() {
  queueEvent([](Page& page) { notify(page, page.handlers.pageRequests.leave); });
}

void VirtualWebEngine::die() {
  if (!processAlive_) return;
  ++page_->process;
  queueEvent([](Page& page) {
    page.url.reset();
    notify(page, page.handlers.urlChanged, std::nullopt);
  });
  processAlive_ = false;
}

std::unique_ptr<WebEngine> VirtualWebEngineFactory::make(const WebEngineConfiguration& configuration,
                                                         WebEngineHandlers handlers) {
  requireMainThread(queue_, "WebEngineFactory::make");
  ++made_;
  return std::make_unique<VirtualWebEngine>(registry_, queue_, configuration, std::move(handlers));
}

}  // namespace orivex::testing

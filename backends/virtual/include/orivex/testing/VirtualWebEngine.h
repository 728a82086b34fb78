#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/WebEngine.h"

namespace orivex::testing {

/// A web page that a test plays: it loads nothing and runs no script, but remembers what it was asked for. What the
/// test makes it tell goes through the main queue, in order, so it arrives when the queue next runs.
class VirtualWebEngine final : public WebEngine {
 public:
  struct FileLoad {
    std::string path;
    std::string readAccessPath;
    bool operator==(const FileLoad&) const = default;
  };

  /// Plays one load or reload.
  using Loader = std::function<void(VirtualWebEngine& engine)>;

  /// Stands in for a page that runs `script`; returns the error's description, or nothing when it ran.
  using ScriptRunner = std::function<std::optional<std::string>(VirtualWebEngine& engine, const std::string& script)>;

  /// The engines alive and what plays their pages; an engine may outlive its factory.
  struct Registry {
    std::vector<VirtualWebEngine*> engines;
    Loader loader;
    ScriptRunner scriptRunner;
  };

  VirtualWebEngine(const std::shared_ptr<Registry>& registry, MainQueue& queue, WebEngineConfiguration configuration,
                   WebEngineHandlers handlers);
  ~VirtualWebEngine() override;

  void load(const UrlRequest& request) override;
  void loadFile(const std::string& path, const std::string& readAccessPath) override;
  void reload() override;

  /// Succeeds unless the factory's script runner says otherwise, `failNextEvaluation` was called or the page's process
  /// is gone.
  void evaluate(const std::string& script, Once<void(std::optional<std::string> error)> completion) override;
  std::optional<std::string> documentUrl() const override { return page_->documentUrl; }
  void limitUserScripts(const std::vector<std::string>& origins) override;
  void endProcess() override { die(); }
  void setCustomUserAgent(const std::string& userAgent) override;
  void setScrollSettings(const ScrollSettings& settings) override;

  // What the page does.

  /// Posts `body`, a JSON text, to the handler `name`. A page cannot post to a name that was not registered: the
  /// process stops.
  void post(const std::string& name, const std::string& body);

  /// Asks whether the navigation to the requested address may go on and starts it; refused, the rest of it is void.
  void startProvisional();

  /// Asks the same about the address that the server names instead.
  void redirect(const std::string& url);

  /// Asks whether the response is welcome and commits to it; then the address changes to `url`.
  void commit(const std::string& url);
  void finish();
  void failProvisional(const std::string& error);
  void fail(const std::string& error);

  /// The requested address from start to finish.
  void completeLoad();

  /// Changes the address without a navigation, as a page's own script can.
  void changeUrl(const std::string& url);

  /// The visitor follows a link that opens a window of its own.
  void openWindow(const std::string& url);

  /// The visitor activates a file input.
  void requestFiles(const FileChooserRequest& request);

  /// The visitor drops or pastes files that the page does not take.
  void offerFiles(const std::vector<std::string>& paths);

  /// A download of the page ends.
  void endDownload(const EndedDownload& download);

  /// The page hangs, and the visitor chooses to leave it.
  void leave();

  /// The process behind the page, if it has one, goes away, with its address and with what it was about to do.
  void die();

  /// The next script fails with `error`.
  void failNextEvaluation(std::string error) { nextEvaluationError_ = std::move(error); }

  // What the engine was asked for.

  const WebEngineConfiguration& configuration() const { return configuration_; }
  /// Origins to which the user scripts were limited last; absent while they run everywhere.
  const std::optional<std::vector<std::string>>& userScriptOrigins() const { return userScriptOrigins_; }
  const std::vector<UrlRequest>& loads() const { return loads_; }
  const std::vector<FileLoad>& fileLoads() const { return fileLoads_; }
  int reloadCount() const { return reloadCount_; }

  /// Everything that was evaluated, in order.
  const std::vector<std::string>& scripts() const { return scripts_; }
  const std::string& customUserAgent() const { return userAgent_; }
  const ScrollSettings& scrollSettings() const { return scrolling_; }

  /// Address that was asked for last; absent before the first load.
  const std::optional<std::string>& requestedUrl() const { return requestedUrl_; }

  /// Address of the page, as last told.
  const std::optional<std::string>& url() const { return page_->url; }
  /// The paths that the file input was given last, none when cancelled; nothing while it waits.
  const std::optional<std::vector<std::string>>& chosenFiles() const { return page_->chosenFiles; }
  bool isProcessAlive() const { return processAlive_; }

 private:
  // What an event may touch while its handler destroys the engine.
  struct Page {
    WebEngineHandlers handlers;
    std::optional<std::string> url;
    std::optional<std::string> documentUrl;
    std::optional<std::vector<std::string>> chosenFiles;
    bool refused = false;
    bool ended = false;
    int process = 0;
  };

  class FileAnswer;

  template <class Event>
  void queueEvent(Event event);
  template <class... Parameters, class... Arguments>
  static void notify(Page& page, const std::function<void(Parameters...)>& handler, Arguments&&... arguments);
  void startLoading();
  std::optional<std::string> run(const std::string& script);
  static void setUrl(Page& page, const std::optional<std::string>& url);

  std::weak_ptr<Registry> registry_;
  MainQueue& queue_;
  WebEngineConfiguration configuration_;
  std::shared_ptr<Page> page_ = std::make_shared<Page>();
  std::optional<std::vector<std::string>> userScriptOrigins_;
  std::vector<UrlRequest> loads_;
  std::vector<FileLoad> fileLoads_;
  std::vector<std::string> scripts_;
  std::string userAgent_;
  ScrollSettings scrolling_;
  std::optional<std::string> requestedUrl_;
  std::optional<std::string> nextEvaluationError_;
  int reloadCount_ = 0;
  bool processAlive_ = true;
  Alive alive_;  // the last member, so that no load is played on an engine half gone
};

/// Makes web pages and knows those that live.
class VirtualWebEngineFactory final : public WebEngineFactory {
 public:
  using Loader = VirtualWebEngine::Loader;
  using ScriptRunner = VirtualWebEngine::ScriptRunner;

  explicit VirtualWebEngineFactory(MainQueue& queue) : queue_(queue) {}

  [[nodiscard]] std::unique_ptr<WebEngine> make(const WebEngineConfiguration& configuration,
                                                WebEngineHandlers handlers) override;

  /// Those alive, the oldest first. A pointer is good until its web view is destroyed.
  const std::vector<VirtualWebEngine*>& engines() const { return registry_->engines; }

  /// How many were ever made.
  std::size_t madeCount() const { return made_; }

  /// Plays every load and reload from now on, called from the queue: for example
  /// `[](VirtualWebEngine& engine) { engine.completeLoad(); }`. Without one nothing happens after a load until the test
  /// plays it.
  void setLoader(Loader loader) { registry_->loader = std::move(loader); }

  /// Runs every script from now on, called from the queue: for example to answer a call with `engine.post(...)`.
  void setScriptRunner(ScriptRunner runner) { registry_->scriptRunner = std::move(runner); }

 private:
  MainQueue& queue_;
  std::shared_ptr<VirtualWebEngine::Registry> registry_ = std::make_shared<VirtualWebEngine::Registry>();
  std::size_t made_ = 0;
};

}  // namespace orivex::testing

#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/Platform.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/WebEngine.h"

namespace orivex::contract {

/// An engine with a record of everything that came out of it.
class WebRecorder {
 public:
  WebRecorder(const Platform& platform, const WebEngineConfiguration& configuration) : platform_(platform) {
    inside([&] { engine = platform.webEngines.make(configuration, handlers()); });
  }
  WebRecorder(const WebRecorder&) = delete;
  WebRecorder& operator=(const WebRecorder&) = delete;
  ~WebRecorder() = default;

  /// Makes `call` into the engine; whatever is told meanwhile fails the test.
  template <class Call>
  void inside(Call call) {
    inside_ = true;
    call();
    inside_ = false;
  }

  void load(const std::string& address) {
    inside([&] { engine->load({*Url::parse(address), 60, {}}); });
  }

  /// Evaluates `script`; the record then has "ran" or "failed" in its place.
  void evaluate(const std::string& script) {
    inside([&] {
      engine->evaluate(script, [this](const std::optional<std::string>& error) {
        EXPECT_NE(error, "") << "an error without a description";
        note(error ? "failed" : "ran");
      });
    });
  }

  bool has(const std::string& event) const { return std::find(events.begin(), events.end(), event) != events.end(); }
  bool isOver() const { return has("finish") || has("failProvisional") || has("fail"); }

  /// The navigation's course without its changes of address and questions.
  std::string course() const {
    std::string text;
    for (const auto& event : events) {
      if (event.starts_with("url ") || event.starts_with("ask")) continue;
      if (!text.empty()) text += ' ';
      text += event;
    }
    return text;
  }

  std::unique_ptr<WebEngine> engine;
  std::vector<std::string> events;
  std::vector<ScriptMessage> messages;
  std::vector<std::optional<std::string>> addresses;
  std::vector<std::string> windows;
  std::vector<FileChooserRequest> fileRequests;
  Once<void(std::vector<std::string>)> fileAnswer;  ///< Of the last request.
  std::vector<std::string> offered;                 ///< Last.
  std::vector<EndedDownload> downloads;
  NavigationPolicy policy = NavigationPolicy::allow;
  std::string endAt;  ///< The engine is destroyed inside the handler of this event.

 private:
  void note(const std::string& event) {
    EXPECT_FALSE(inside_) << event << " was told inside a call into the engine";
    EXPECT_TRUE(platform_.mainQueue.isMainThread()) << event;
    events.push_back(event);
    if (event == endAt) engine.reset();
  }

  WebEngineHandlers handlers() {
    WebEngineHandlers handlers;
    handlers.scriptMessage = [this](ScriptMessage message) {
      messages.push_back(std::move(message));
      note("message");
    };
    handlers.didStartProvisionalNavigation = [this] { note("start"); };
    handlers.didReceiveServerRedirect = [this] { note("redirect"); };
    handlers.didCommitNavigation = [this] { note("commit"); };
    handlers.didFinishNavigation = [this] { note("finish"); };
    handlers.didFailProvisionalNavigation = [this](const std::string& error) {
      EXPECT_NE(error, "");
      note("failProvisional");
    };
    handlers.didFailNavigation = [this](const std::string&) { note("fail"); };
    handlers.decideNavigationAction = [this](const std::optional<std::string>& url) {
      note("ask " + url.value_or("nothing"));
      return policy;
    };
    handlers.decideNavigationResponse = [this] {
      note("ask response");
      return NavigationPolicy::allow;
    };
    handlers.urlChanged = [this](const std::optional<std::string>& url) {
      addresses.push_back(url);
      note("url " + url.value_or("nothing"));
    };
    handlers.pageRequests = {.openWindow =
                                 [this](const std::string& url) {
                                   windows.push_back(url);
                                   note("window");
                                 },
                             .chooseFiles =
                                 [this](const FileChooserRequest& request, auto completion) {
                                   fileRequests.push_back(request);
                                   fileAnswer = std::move(completion);
                                   note("files");
                                 },
                             .filesOffered =
                                 [this](const std::vector<std::string>& paths) {
                                   offered = paths;
                                   note("offered");
                                 },
                             .downloadEnded =
                                 [this](const EndedDownload& download) {
                                   downloads.push_back(download);
                                   note("download");
                                 },
                             .leave = [this] { note("leave"); }};
    return handlers;
  }

  const Platform& platform_;
  bool inside_ = false;
};

}  // namespace orivex::contract

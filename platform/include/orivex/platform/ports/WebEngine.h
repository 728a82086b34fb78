#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

/// What a page posted: the name of the handler and the body as JSON text ("null" for undefined).
struct ScriptMessage {
  std::string name;
  std::string body;
};

/// What an engine must know before it starts, in the order in which it was asked for.
struct WebEngineConfiguration {
  std::vector<std::string> scriptMessageNames;
  std::vector<std::string> userScripts;  ///< run before the page's own, in the page itself and not in its frames
  bool javaScriptCanOpenWindowsAutomatically = true;
  bool inspectable = false;  ///< by the web inspector, from the page's menu
};

/// How the content lies in its view.
struct ScrollSettings {
  bool scrollEnabled = true;
  std::optional<Color> backgroundColor;
  bool operator==(const ScrollSettings&) const = default;
};

/// Whether a navigation goes on.
enum class NavigationPolicy { cancel, allow };

/// What a file input of a page asks for.
struct FileChooserRequest {
  std::vector<std::string> mimeTypes;  ///< such as "application/pdf" or "image/*"; empty: all files
  bool multiple = false;
  bool operator==(const FileChooserRequest&) const = default;
};

/// A download of a page that has ended. Each follows a gesture of the visitor, and a page has one at a time; others are
/// refused with one log line.
struct EndedDownload {
  std::string fileName;  ///< under which it was saved, or should have been
  bool saved = false;
  bool operator==(const EndedDownload&) const = default;
};

/// What a page asks of its surroundings. An engine without a handler answers as if the visitor had declined.
struct PageRequestHandlers {
  /// On a gesture of the visitor the page opens an address in a window of its own, which `decideNavigationAction` has
  /// allowed. The engine makes no window: the page learns nothing of what becomes of the address. Without a gesture the
  /// engine refuses by itself, with one log line.
  std::function<void(const std::string& url)> openWindow;

  /// The visitor has activated a file input. `completion` takes the paths of the files, none when the visitor cancels;
  /// dropped without a call, it cancels too. It may be called after the engine is gone and then does nothing.
  std::function<void(const FileChooserRequest& request, Once<void(std::vector<std::string> paths)> completion)>
      chooseFiles;

  /// The visitor has dropped or pasted these files, and the page has not taken them itself: paths, readable for as long
  /// as the engine lives.
  std::function<void(const std::vector<std::string>& paths)> filesOffered;

  std::function<void(const EndedDownload& download)> downloadEnded;

  /// The page has stood still for long, and the visitor, asked by the engine, wants to leave it.
  std::function<void()> leave;
};

/// Everything that comes out of an engine, all on the main thread and never inside a call into the engine. At first,
/// all of it goes unheard and every navigation goes on.
struct WebEngineHandlers {
  using Event = std::function<void()>;
  using Failed = std::function<void(const std::string& error)>;

  std::function<void(const ScriptMessage& message)> scriptMessage = [](const auto&) {};
  Event didStartProvisionalNavigation = [] {};
  Event didReceiveServerRedirect = [] {};
  Event didCommitNavigation = [] {};
  Event didFinishNavigation = [] {};
  Failed didFailProvisionalNavigation = [](const auto&) {};
  Failed didFailNavigation = [](const auto&) {};
  /// Asked for each address to which the page or a frame of it wants to go, in a window of its own too, and for each to
  /// which a server redirects it.
  std::function<NavigationPolicy(const std::optional<std::string>& url)> decideNavigationAction = [](const auto&) {
    return NavigationPolicy::allow;
  };
  std::function<NavigationPolicy()> decideNavigationResponse = [] { return NavigationPolicy::allow; };
  /// The address changed; absent when the process behind the page is gone.
  std::function<void(const std::optional<std::string>& url)> urlChanged = [](const auto&) {};
  PageRequestHandlers pageRequests;
};

/// One web page in its own process. Main thread. A page process that dies is told by `urlChanged` with no address;
/// `reload` then starts another.
class WebEngine : public Interface {
 public:
  virtual void load(const UrlRequest& request) = 0;

  /// Loads a local page that may read files inside `readAccessPath` only.
  virtual void loadFile(const std::string& path, const std::string& readAccessPath) = 0;

  /// Loads the page again, or what was asked for last if it has not come yet.
  virtual void reload() = 0;

  /// The error of a script whose page process went before it had run, which `urlChanged` has told by then.
  static constexpr std::string_view processGone = "The page's process has gone";

  /// Runs `script` in the page; `completion` gets the error's description, or nothing when it ran.
  virtual void evaluate(const std::string& script, Once<void(std::optional<std::string> error)> completion) = 0;

  /// Address of the document whose scripts run now: not yet that of a navigation that has only begun, which
  /// `urlChanged` may tell already. Absent before the first document.
  virtual std::optional<std::string> documentUrl() const = 0;

  /// From the next document on, the configuration's user scripts run only in those of these origins, such as
  /// "https://chat.example"; which port it is makes no difference. At first they run in all.
  virtual void limitUserScripts(const std::vector<std::string>& origins) = 0;

  /// Ends the page's process, which `urlChanged` may tell as when it dies. Nothing else is asked of the engine then.
  virtual void endProcess() = 0;

  virtual void setCustomUserAgent(const std::string& userAgent) = 0;
  virtual void setScrollSettings(const ScrollSettings& settings) = 0;
};

class WebEngineFactory : public Interface {
 public:
  [[nodiscard]] virtual std::unique_ptr<WebEngine> make(const WebEngineConfiguration& configuration,
                                                        WebEngineHandlers handlers) = 0;
};

}  // namespace orivex

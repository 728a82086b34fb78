#pragma once

#include <memory>

#include <webkit/webkit.h>

#include "../glib/SignalConnection.h"
#include "PageDownloads.h"

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/WebEngine.h"

namespace orivex::gtk {

/// Brings what one page asks of its surroundings to the handlers of its engine: other windows, files, downloads.
class PageRequests {
 public:
  /// `view` and `handlers` outlive this object; `downloads` are shared by all pages of `session`.
  PageRequests(WebKitWebView* view, WebKitNetworkSession* session, std::shared_ptr<PageDownloads> downloads,
               MainQueue& mainQueue, const WebEngineHandlers& handlers);

  /// The page, or a frame of it, goes to an address; on a gesture of the visitor this may become a download.
  void navigates(WebKitNavigationAction* action);

  /// Another document has taken the page's place: what the visitor did in the last one does not count in this one.
  void documentReplaced() { gesture_ = false; }

  /// The page opens an address in another window.
  void openWindow(WebKitNavigationAction* action);

  /// Saves a response that is no page: one that the server calls an attachment, or of a type that WebKit cannot show.
  /// Returns whether it did.
  static bool saveUnshowable(WebKitResponsePolicyDecision* decision);

 private:
  class NamedLinks;

  void chooseFiles(WebKitFileChooserRequest* request);
  void downloadStarted(WebKitDownload* download);

  WebKitWebView* const view_;
  const std::shared_ptr<PageDownloads> downloads_;
  MainQueue& mainQueue_;
  const WebEngineHandlers& handlers_;
  bool gesture_ = false;  // one that no download has followed yet
  bool downloading_ = false;
  const std::shared_ptr<NamedLinks> links_;  // a page reads its files when it likes
  SignalConnections signals_;
  Alive alive_;
};

}  // namespace orivex::gtk

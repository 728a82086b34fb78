#include "PageRequests.h"

#include <string>
#include <utility>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

/// The answer to a file input. One that is never given cancels.
class FileAnswer {
 public:
  FileAnswer(WebKitFileChooserRequest* request, std::shared_ptr<NamedLinks> links)
      : request_(GRef<WebKitFileChooserRequest>::share(request)), links_(std::move(links)) {}
  FileAnswer(const FileAnswer&) = delete;
  FileAnswer& operator=(const FileAnswer&) = delete;
  ~FileAnswer() { give({}); }

  void give(const std::vector<std::string>& paths) {
    const auto request = std::exchange(request_, nullptr);
    if (!request) return;
    if (paths.empty()) {
      webkit_file_chooser_request_cancel(request.get());
      return;
    }
    std::vector<std::string> readable;
    readable.reserve(paths.size());
    for (const auto& path : paths) readable.push_back(links_->textPath(path));
    std::vector<const char*> list;
    list.reserve(paths.size() + 1);
    for (const auto& path : readable) list.push_back(path.c_str());
    list.push_back(nullptr);
    webkit_file_chooser_request_select_files(request.get(), list.data());
  }

 private:
  GRef<WebKitFileChooserRequest> request_;
  std::shared_ptr<NamedLinks> links_;
};

FileChooserRequest described(WebKitFileChooserRequest* request) {
  FileChooserRequest description;
  description.multiple = webkit_file_chooser_request_get_select_multiple(request) != FALSE;
  // WebKit keeps the file extensions of an "accept" attribute to itself; a list of those alone offers every file.
  const auto* types = webkit_file_chooser_request_get_mime_types(request);
  for (; types && *types; ++types) description.mimeTypes.emplace_back(*types);
  return description;
}

// Asks about the address of a window as about any other before it is opened.
PageRequestHandlers askingFirst(const WebEngineHandlers& handlers) {
  auto requests = handlers.pageRequests;
  requests.openWindow = [decide = handlers.decideNavigationAction, open = requests.openWindow](const std::string& url) {
    const auto kept = std::pair(decide, open);  // the handler may end the engine, and with it this function
    if (kept.second && kept.first(url) == NavigationPolicy::allow) kept.second(url);
  };
  return requests;
}

bool isAttachment(WebKitURIResponse* response) {
  auto* const headers = webkit_uri_response_get_http_headers(response);
  char* raw = nullptr;
  if (!headers || !soup_message_headers_get_content_disposition(headers, &raw, nullptr)) return false;
  const GCharPtr disposition(raw);
  return g_ascii_strcasecmp(disposition.get(), "attachment") == 0;
}

}  // namespace

PageRequests::PageRequests(WebKitWebView* view, WebKitNetworkSession* session, std::shared_ptr<PageDownloads> downloads,
                           MainQueue& mainQueue, const WebEngineHandlers& handlers)
    : view_(view), downloads_(std::move(downloads)), mainQueue_(mainQueue), handlers_(askingFirst(handlers)) {
  signals_.push_back(SignalConnection::connect<&PageRequests::createWindow>(view, "create", this));
  signals_.push_back(SignalConnection::connect<&PageRequests::runFileChooser>(view, "run-file-chooser", this));
  signals_.push_back(SignalConnection::connect<&PageRequests::downloadStarted>(session, "download-started", this));
}

void PageRequests::navigates(WebKitNavigationAction* action) {
  if (webkit_navigation_action_is_user_gesture(action)) gesture_ = true;
}

void PageRequests::openWindow(WebKitNavigationAction* action) {
  const char* const uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const std::string url = uri ? uri : "";
  if (!webkit_navigation_action_is_user_gesture(action)) {
    log::print("A window that nobody asked for was refused: " + url);
  } else if (url.empty() || url.starts_with("about:")) {
    log::print("A window without an address was refused");
  } else if (handlers_.openWindow) {
    mainQueue_.async(alive_.guard([this, url] { handlers_.openWindow(url); }));
  }
}

GtkWidget* PageRequests::createWindow(WebKitWebView* /*view*/, WebKitNavigationAction* action) {
  openWindow(action);
  return nullptr;  // to the page the window was blocked: it gets no hold on what it has opened
}

gboolean PageRequests::runFileChooser(WebKitWebView* /*view*/, WebKitFileChooserRequest* request) {
  if (!handlers_.chooseFiles) {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
  }
  auto answer = std::make_unique<FileAnswer>(request, links_);
  mainQueue_.async(alive_.guard([this, description = described(request), answer = std::move(answer)]() mutable {
    handlers_.chooseFiles(description,
                          [answer = std::move(answer)](const std::vector<std::string>& paths) { answer->give(paths); });
  }));
  return TRUE;
}

bool PageRequests::saveUnshowable(WebKitResponsePolicyDecision* decision) {
  auto* const response = webkit_response_policy_decision_get_response(decision);
  const auto status = webkit_uri_response_get_status_code(response);
  const bool failed = status >= 400;  // the server's words about a failure are not the file
  const bool showable = webkit_response_policy_decision_is_mime_type_supported(decision) && !isAttachment(response);
  if (failed || showable) return false;
  webkit_policy_decision_download(WEBKIT_POLICY_DECISION(decision));
  return true;
}

void PageRequests::downloadStarted(WebKitNetworkSession* /*session*/, WebKitDownload* download) {
  if (webkit_download_get_web_view(download) != view_) return;  // another page's, or the host's own
  const bool asked = std::exchange(gesture_, false);
  if (!asked || downloading_) {
    log::print(asked ? "A second download of the page was refused" : "A download that nobody asked for was refused");
    webkit_download_cancel(download);
    return;
  }
  downloading_ = true;
  downloads_->take(download, alive_.guard([this](const EndedDownload& ended) {
    downloading_ = false;
    if (handlers_.downloadEnded) handlers_.downloadEnded(ended);
  }));
}

}  // namespace orivex::gtk

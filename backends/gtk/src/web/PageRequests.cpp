#include "PageRequests.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "../FreeWith.h"
#include "../glib/GMemory.h"
#include "../glib/GRef.h"

#include "orivex/platform/base/Log.h"
#include "orivex/platform/base/Text.h"

namespace orivex::gtk {
namespace {

FileChooserRequest described(WebKitFileChooserRequest* request) {
  FileChooserRequest description;
  description.multiple = webkit_file_chooser_request_get_select_multiple(request) != FALSE;
  // WebKit keeps the file extensions of an "accept" attribute to itself; a list of those alone offers every file.
  const auto* types = webkit_file_chooser_request_get_mime_types(request);
  for (; types && *types; ++types) description.mimeTypes.emplace_back(*types);
  return description;
}

bool isAttachment(WebKitURIResponse* response) {
  auto* const headers = webkit_uri_response_get_http_headers(response);
  char* raw = nullptr;
  if (!headers || !soup_message_headers_get_content_disposition(headers, &raw, nullptr)) return false;
  const GCharPtr disposition(raw);
  return g_ascii_strcasecmp(disposition.get(), "attachment") == 0;
}

}  // namespace

/// Gives files whose path is no UTF-8 text, which a web engine can neither name nor read, links that it can. The links
/// go with this object.
class PageRequests::NamedLinks {
 public:
  NamedLinks() = default;
  NamedLinks(const NamedLinks&) = delete;
  NamedLinks& operator=(const NamedLinks&) = delete;
  ~NamedLinks() {
    std::error_code ignored;
    for (const auto& folder : folders_) std::filesystem::remove_all(folder, ignored);
  }

  /// A path to the file at `path` that is text: that path itself where it is.
  std::string textPath(const std::string& path) {
    if (isValidUtf8(path)) return path;
    const GCharPtr folder(g_dir_make_tmp("orivex-XXXXXX", nullptr));  // one for each: two files may get the same name
    if (!folder) return path;
    folders_.emplace_back(folder.get());
    const auto link = folders_.back() / validUtf8(std::filesystem::path(path).filename().string());
    std::error_code error;
    std::filesystem::create_symlink(path, link, error);
    return error ? path : link.string();
  }

 private:
  std::vector<std::filesystem::path> folders_;
};

PageRequests::PageRequests(WebKitWebView* view, WebKitNetworkSession* session, std::shared_ptr<PageDownloads> downloads,
                           MainQueue& mainQueue, const WebEngineHandlers& handlers)
    : view_(view),
      downloads_(std::move(downloads)),
      mainQueue_(mainQueue),
      handlers_(handlers),
      links_(std::make_shared<NamedLinks>()) {
  signals_.add(view, "create", [this](WebKitNavigationAction* action) -> GtkWidget* {
    openWindow(action);
    return nullptr;  // to the page the window was blocked: it gets no hold on what it has opened
  });
  signals_.add(view, "run-file-chooser", [this](WebKitFileChooserRequest* request) {
    chooseFiles(request);
    return true;
  });
  signals_.add(session, "download-started", [this](WebKitDownload* download) { downloadStarted(download); });
}

void PageRequests::navigates(WebKitNavigationAction* action) {
  if (webkit_navigation_action_is_user_gesture(action)) gesture_ = true;
}

void PageRequests::openWindow(WebKitNavigationAction* action) {
  const char* const uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const std::string url = uri ? uri : "";
  if (!webkit_navigation_action_is_user_gesture(action)) {
    log::print("A window that nobody asked for was refused: " + url, log::Level::info);
  } else if (url.empty() || url.starts_with("about:")) {
    log::print("A window without an address was refused", log::Level::info);
  } else {
    mainQueue_.async(alive_.guard([this, url] {
      // Copies, as a handler may end the engine.
      const auto decide = handlers_.decideNavigationAction;
      const auto open = handlers_.pageRequests.openWindow;
      if (open && decide(url) == NavigationPolicy::allow) open(url);
    }));
  }
}

// WebKit cancels a request that is dropped without an answer.
void PageRequests::chooseFiles(WebKitFileChooserRequest* request) {
  mainQueue_.async(alive_.guard([this, request = GRef<WebKitFileChooserRequest>::share(request)] {
    const auto& choose = handlers_.pageRequests.chooseFiles;
    if (!choose) return;
    choose(described(request.get()), [request, links = links_](const std::vector<std::string>& paths) {
      if (paths.empty()) return webkit_file_chooser_request_cancel(request.get());
      const std::unique_ptr<GStrvBuilder, FreeWith<g_strv_builder_unref>> files(g_strv_builder_new());
      for (const auto& path : paths) g_strv_builder_add(files.get(), links->textPath(path).c_str());
      const GStrvPtr list(g_strv_builder_end(files.get()));
      webkit_file_chooser_request_select_files(request.get(), list.get());
    });
  }));
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

void PageRequests::downloadStarted(WebKitDownload* download) {
  if (webkit_download_get_web_view(download) != view_) return;  // another page's, or the host's own
  const bool asked = std::exchange(gesture_, false);
  if (!asked || downloading_) {
    log::print(asked ? "A second download of the page was refused" : "A download that nobody asked for was refused",
               log::Level::info);
    webkit_download_cancel(download);
    return;
  }
  downloading_ = true;
  downloads_->save(download, alive_.guard([this](const EndedDownload& ended) {
    downloading_ = false;
    if (const auto& report = handlers_.pageRequests.downloadEnded) report(ended);
  }));
}

}  // namespace orivex::gtk

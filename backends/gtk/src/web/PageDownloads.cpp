#include "PageDownloads.h"

#include <algorithm>
#include <utility>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "DownloadFile.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {

class PageDownloads::Download {
 public:
  Download(PageDownloads& owner, WebKitDownload* download, Ended ended)
      : owner_(owner), download_(GRef<WebKitDownload>::share(download)), ended_(std::move(ended)) {
    signals_.push_back(SignalConnection::connect<&Download::decideDestination>(download, "decide-destination", this));
    signals_.push_back(SignalConnection::connect<&Download::failed>(download, "failed", this));
    signals_.push_back(SignalConnection::connect<&Download::finished>(download, "finished", this));
  }
  Download(const Download&) = delete;
  Download& operator=(const Download&) = delete;
  ~Download() {
    signals_.clear();
    if (!over_) webkit_download_cancel(download_.get());
  }

 private:
  gboolean decideDestination(WebKitDownload* download, const char* suggested) {
    name_ = safeFileName(suggested);
    if (const auto folder = downloadFolder()) file_ = DownloadFile::make(*folder, name_);
    if (!file_) {
      log::print("A download was refused: no folder takes its file");
      webkit_download_cancel(download);
      return TRUE;
    }
    name_ = file_->path().filename();
    // The empty file that holds the name is ours.
    webkit_download_set_allow_overwrite(download, TRUE);
    webkit_download_set_destination(download, file_->path().c_str());
    return TRUE;
  }

  void failed(WebKitDownload* /*download*/, GError* error) {
    failed_ = true;
    log::print(std::string("A download failed: ") + error->message);
  }

  // Comes after a failure too.
  void finished(WebKitDownload* /*download*/) {
    over_ = true;
    const bool saved = file_ && !failed_;
    if (saved) file_->keep();
    const EndedDownload download{name_, saved};
    const auto ended = std::move(ended_);
    owner_.forget(this);  // ends this object
    ended(download);
  }

  PageDownloads& owner_;
  const GRef<WebKitDownload> download_;
  Ended ended_;
  std::string name_;
  std::unique_ptr<DownloadFile> file_;
  bool failed_ = false;
  bool over_ = false;
  std::vector<SignalConnection> signals_;
};

PageDownloads::PageDownloads() = default;
PageDownloads::~PageDownloads() = default;

void PageDownloads::take(WebKitDownload* download, Ended ended) {
  downloads_.push_back(std::make_unique<Download>(*this, download, std::move(ended)));
}

void PageDownloads::forget(const Download* download) {
  std::erase_if(downloads_, [download](const auto& candidate) { return candidate.get() == download; });
}

}  // namespace orivex::gtk

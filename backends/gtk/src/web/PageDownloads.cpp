#include "PageDownloads.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "../glib/GMemory.h"
#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Log.h"

namespace orivex::gtk {
namespace {

// File systems take 255 bytes; a number and WebKit's own suffix for what is not complete must still fit.
constexpr std::size_t longestName = 200;
constexpr std::size_t longestExtension = 20;
constexpr int mostNumbers = 1000;

// What WebKit writes to before a download is complete.
constexpr const char* partialSuffix = ".wkdownload";

// Separators, control characters, and those that change the direction of writing: "cod\u202Efdp.exe" would read as a
// document.
bool isUnsafe(gunichar point) {
  return point == '/' || point == '\\' || g_unichar_iscntrl(point) || (point >= 0x200E && point <= 0x200F) ||
         (point >= 0x2028 && point <= 0x202E) || (point >= 0x2066 && point <= 0x2069);
}

std::size_t cutBefore(const std::string& text, std::size_t bytes) {
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80) --bytes;
  return bytes;
}

std::string shortened(const std::string& name) {
  if (name.size() <= longestName) return name;
  auto extension = std::filesystem::path(name).extension().string();
  if (extension.size() > longestExtension) extension.clear();
  return name.substr(0, cutBefore(name, longestName - extension.size())) + extension;
}

bool takesFiles(const std::filesystem::path& folder) {
  constexpr int ownerOnly = 0700;
  return g_mkdir_with_parents(folder.c_str(), ownerOnly) == 0 && access(folder.c_str(), W_OK | X_OK) == 0;
}

// The visitor's folder for downloads; the component's own data folder when there is none or it takes no files.
std::optional<std::filesystem::path> downloadFolder() {
  const char* const visitors = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
  if (visitors && takesFiles(visitors)) return visitors;
  const auto own = std::filesystem::path(g_get_user_data_dir()) / "orivex-sdk" / "downloads";
  return takesFiles(own) ? std::optional(own) : std::nullopt;
}

// Makes an empty file in `folder` under `name`, or, where that is taken, under "name (2).ext" and so on. Made at once,
// so that nobody else can take the name. Nothing when the folder takes none.
std::optional<std::filesystem::path> reserveFile(const std::filesystem::path& folder, const std::string& name) {
  const auto stem = std::filesystem::path(name).stem().string();
  const auto extension = std::filesystem::path(name).extension().string();
  for (int number = 1; number <= mostNumbers; ++number) {
    auto tried = stem;
    if (number > 1) tried += " (" + std::to_string(number) + ")";
    auto path = folder / tried.append(extension);
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file >= 0) {
      close(file);
      return path;
    }
    if (errno != EEXIST) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

std::string safeFileName(std::string_view suggested) {
  const GCharPtr valid(g_utf8_make_valid(suggested.data(), static_cast<gssize>(suggested.size())));
  std::string name;
  for (const char* at = valid.get(); *at;) {
    const char* const next = g_utf8_next_char(at);
    name += isUnsafe(g_utf8_get_char(at)) ? "_" : std::string(at, next);
    at = next;
  }
  name.erase(0, std::min(name.find_first_not_of(". "), name.size()));
  name.erase(name.find_last_not_of(". ") + 1);
  return name.empty() ? "download" : shortened(name);
}

class PageDownloads::Download {
 public:
  Download(PageDownloads& owner, WebKitDownload* download, Ended ended)
      : owner_(owner), download_(GRef<WebKitDownload>::share(download)), ended_(std::move(ended)) {
    signals_.add(download, "decide-destination", [this](const char* suggested) {
      decideDestination(suggested);
      return true;
    });
    signals_.add(download, "failed", [this](GError* error) {
      failed_ = true;
      log::warning(std::string("A download failed: ") + error->message);
    });
    // Comes after a failure too.
    signals_.add(download, "finished", [this] { finish(); });
  }
  Download(const Download&) = delete;
  Download& operator=(const Download&) = delete;
  ~Download() {
    signals_.disconnect();
    if (!finished_) webkit_download_cancel(download_.get());
    if (!file_ || isSaved()) return;
    unlink(file_->c_str());
    unlink((file_->string() + partialSuffix).c_str());
  }

 private:
  bool isSaved() const { return finished_ && file_ && !failed_; }

  void decideDestination(const char* suggested) {
    name_ = safeFileName(suggested);
    if (const auto folder = downloadFolder()) file_ = reserveFile(*folder, name_);
    if (!file_) {
      log::warning("A download was refused: no folder takes its file");
      return webkit_download_cancel(download_.get());
    }
    name_ = file_->filename();
    webkit_download_set_allow_overwrite(download_.get(), TRUE);  // the empty file that holds the name is ours
    webkit_download_set_destination(download_.get(), file_->c_str());
  }

  void finish() {
    finished_ = true;
    const EndedDownload download{name_, isSaved()};
    const auto ended = std::move(ended_);
    std::erase_if(owner_.downloads_, [this](const auto& candidate) { return candidate.get() == this; });  // ends it
    ended(download);
  }

  PageDownloads& owner_;
  const GRef<WebKitDownload> download_;
  Ended ended_;
  std::string name_;
  std::optional<std::filesystem::path> file_;
  bool failed_ = false;
  bool finished_ = false;
  SignalConnections signals_;
};

PageDownloads::PageDownloads() = default;
PageDownloads::~PageDownloads() = default;

void PageDownloads::save(WebKitDownload* download, Ended ended) {
  downloads_.push_back(std::make_unique<Download>(*this, download, std::move(ended)));
}

}  // namespace orivex::gtk

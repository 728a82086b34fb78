#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orivex/media/Attachment.h"
#include "orivex/models/PageModels.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class ViewController;

/// Serves the page's requests for photos, videos and documents. One per process, made on first use and never
/// destroyed. Main thread.
class ChatManager {
 public:
  static ChatManager& shared();

  /// The chat page address of the session, as `OVKFApiManager` keeps it.
  std::optional<Url>& instanceURL;

  /// Each stores the request's limit and visitor identifier, then opens its picker over `screen`; what the visitor
  /// picks is sent. `answer` is never called when nothing was picked.
  void openCamera(const PostMessageModel& request, ViewController& screen, AttachmentAnswer answer);
  void openPhotoLibrary(const PostMessageModel& request, ViewController& screen, AttachmentAnswer answer);
  void openDocumentPicker(const PostMessageModel& request, ViewController& screen, AttachmentAnswer answer);

  /// Sends the files at `paths`, which the visitor gave without a picker, as documents; more than nine at once are
  /// refused, and the visitor is told.
  void attachFiles(const std::vector<std::string>& paths, ViewController& screen, AttachmentAnswer answer);

  /// Offers the applications that open the file at `file`, anchored to `screen`; the visitor is told when there are
  /// none.
  void openFile(const Url& file, ViewController& screen);

  ChatManager(const ChatManager&) = delete;
  ChatManager& operator=(const ChatManager&) = delete;

 private:
  friend class ProcessState;
  ChatManager();
  ~ChatManager() = default;
};

}  // namespace orivex

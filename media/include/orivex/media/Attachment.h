#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orivex/models/UploadModels.h"
#include "orivex/platform/ports/HttpClient.h"

namespace orivex {

class View;

/// One file on its way to the page. Pickers and the recorder say what is particular of their files by deriving from it;
/// `sendAttachments` does the rest.
class Attachment {
 public:
  Attachment() = default;
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  virtual ~Attachment() = default;

  /// What the page is told.
  UploadFileInfoModel description;

  /// What the server is sent; absent when the page needs no address.
  std::optional<FilePart> upload;

  /// Why the file is not sent, for the visitor; empty when that is not for him to know.
  std::optional<std::string> refusal;

  /// Begins an attempt, of which there may be several. Main thread.
  virtual void open() {}

  /// Describes and checks the file. On a worker thread: disks may be slow, and pictures take their time.
  virtual void inspect() {}

  /// Whether nothing is left to `inspect`. The file is then uploaded at once.
  virtual bool isInspected() const { return false; }

  /// The upload has ended; `stored` is what the server says of the file, null when it does not have it. Main thread.
  virtual void uploaded(const UploadResposeModel* stored);
};

/// Receives the descriptions of what was sent together, and, each by itself, of what was sent again after it had
/// failed; never called with none.
using AttachmentAnswer = std::function<void(std::vector<UploadFileInfoModel>)>;

/// Inspects `attachments`, at most two at once, uploads those that need it to the chat server of the session as it is
/// now, and answers with the descriptions in their order. What is refused or not stored is told to the visitor and left
/// out; what was not stored can be sent again while the screen of `view` shows. What has not begun, or is not uploaded
/// yet, when that screen leaves is left out too, which the visitor is told over the window behind it, as of all that a
/// chat had not got when it closed. Main thread, as is `answer`, which is kept for as long as something may be sent
/// again.
void sendAttachments(std::vector<std::shared_ptr<Attachment>> attachments, std::weak_ptr<View> view,
                     AttachmentAnswer answer);

/// Shows the visitor what is to be known of an attachment, for 3.0 seconds over the screen of `view`. Main thread.
void showAttachmentMessage(const std::weak_ptr<View>& view, const std::string& message);

/// Extension of a path without its dot, as written but valid UTF-8; empty without one.
std::string fileExtension(const std::string& path);

}  // namespace orivex

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "orivex/models/PostMessageModel.h"
#include "orivex/models/UploadFileInfoModel.h"
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

  /// Receives the descriptions of what the visitor picked, and, each by itself, of what was sent again after it had
  /// failed; never called when nothing was picked.
  using PickedFiles = std::function<void(std::vector<UploadFileInfoModel>)>;

  /// Each stores the request's limit and visitor identifier, then opens its picker over `screen`.
  void openCamera(const PostMessageModel& request, ViewController& screen, PickedFiles completion);
  void openPhotoLibrary(const PostMessageModel& request, ViewController& screen, PickedFiles completion);
  void openDocumentPicker(const PostMessageModel& request, ViewController& screen, PickedFiles completion);

  /// Offers the applications that open the file at `file`, anchored to `screen`.
  void openFile(const Url& file, ViewController& screen);

  /// What serves a request once it is stored: at first the device's own pickers. A host may put its own in their place.
  using Picker = std::function<void(const PostMessageModel& request, ViewController& screen, PickedFiles completion)>;
  struct Services {
    Picker camera;
    Picker photoLibrary;
    Picker documents;
    std::function<void(const Url& file, ViewController& screen)> openFile;
  };
  Services services;

  ChatManager(const ChatManager&) = delete;
  ChatManager& operator=(const ChatManager&) = delete;

 private:
  friend class ProcessState;
  ChatManager();
  ~ChatManager() = default;
};

}  // namespace orivex

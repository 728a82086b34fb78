#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <webkit/webkit.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Alive.h"

namespace orivex::gtk {

/// Files that the visitor drops on a page or pastes into it and that the page, as `limitPage` finds, does not take. A
/// picture that another application has in the clipboard becomes a file, which goes with this object.
class OfferedFiles {
 public:
  using Paths = std::vector<std::string>;

  /// `offer` gets the files' paths, if it is there.
  OfferedFiles(WebKitWebView* view, std::function<void(const Paths& paths)> offer);
  OfferedFiles(const OfferedFiles&) = delete;
  OfferedFiles& operator=(const OfferedFiles&) = delete;
  ~OfferedFiles();

 private:
  void readDrop();
  void offerDropped();
  void readClipboard();
  void readPicture(GdkClipboard* clipboard);
  void savePicture(GInputStream* picture, const std::string& type);
  void offer(const Paths& paths) const;

  WebKitWebView* const view_;
  const std::function<void(const Paths& paths)> offer_;
  SignalConnections signals_;
  GtkDropControllerMotion* const motion_;  // the view's
  // What was dragged over the page last, read while it was: once it is dropped, it is the page's. Absent until then.
  std::optional<Paths> dragged_;
  bool wasDropped_ = false;  // and waits for its paths
  GRef<GCancellable> cancellable_;
  std::vector<std::filesystem::path> folders_;
  Alive alive_;
};

}  // namespace orivex::gtk

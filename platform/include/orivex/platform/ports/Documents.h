#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "orivex/platform/base/Failure.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Url.h"

namespace orivex {

class View;

struct DocumentPickerOptions {
  /// MIME types of the files to offer, such as "application/pdf" or "image/*"; empty: all files.
  std::vector<std::string> mimeTypes;
  /// Whether several files may be picked together.
  bool multiple = false;
};

struct PickedDocuments {
  std::vector<Url> files;
};
struct PickingCancelled {};
using DocumentPickerOutcome = std::variant<PickedDocuments, PickingCancelled>;

/// The right to read a picked file, for as long as it lives.
class FileAccess : public Interface {};

/// The device's chooser for files.
class DocumentPicker : public Interface {
 public:
  /// Opens the chooser over the window of `view`. Main thread; `completion` is called at most once, on the main thread
  /// and not inside this call: never when the window goes away or the screen of `view` leaves first, either of which
  /// closes the chooser. A second call while a chooser is open brings that
  /// one to the front and ends in `PickingCancelled`.
  virtual void present(const DocumentPickerOptions& options, View& view,
                       Once<void(DocumentPickerOutcome)> completion) = 0;

  /// Starts access to a picked file. A failure when the device refuses it, and when it is gone or no regular file.
  virtual std::variant<std::unique_ptr<FileAccess>, Failure> startAccess(const Url& file) = 0;
};

/// The device's menu of applications that open a file.
class DocumentInteraction : public Interface {
 public:
  /// Shows the menu for `file`, a web address, from `rect` of `view`, until its screen leaves. False when no
  /// application opens such files, and for an address that is not of the web: what lies on the device is no business of
  /// a page's. Nothing is shown then. Main thread.
  virtual bool presentOptionsMenu(const Url& file, const Rect& rect, View& view) = 0;
};

}  // namespace orivex

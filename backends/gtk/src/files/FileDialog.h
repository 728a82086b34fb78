#pragma once

#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"

#include "orivex/platform/base/Once.h"
#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {

/// The desktop's own file chooser over a window, through the desktop's portal in a sandbox. Destroying it closes it
/// without an answer. Main thread.
class FileDialog {
 public:
  using Files = std::vector<GRef<GFile>>;

  struct Options {
    const char* title = tr("选择文件");
    std::vector<GRef<GtkFileFilter>> filters{};  ///< the first is preset; none: every file is offered
    GFile* folder = nullptr;                     ///< where it opens; null: the desktop chooses
    bool multiple = false;
  };

  /// Opens at once. `answered` is called once, later, with no files when the visitor chose none; it may destroy this
  /// object.
  FileDialog(GtkWindow* parent, const Options& options, Once<void(Files)> answered);
  FileDialog(const FileDialog&) = delete;
  FileDialog& operator=(const FileDialog&) = delete;
  ~FileDialog();

  void bringToFront() const;

  /// Whether one is open or closed a moment ago. A portal's has its window in another process.
  static bool isAnyOpen() { return openCount > 0; }

  /// The paths of those of the files that have one: what only a network protocol reaches has none, and nobody here
  /// could read it.
  static std::vector<std::string> pathsOf(const Files& files);

 private:
  inline static int openCount = 0;

  GtkWindow* const parent_;
  Once<void(Files)> answered_;
  GRef<GtkFileChooserNative> chooser_;
  SignalConnection responded_;
};

}  // namespace orivex::gtk

#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/GRef.h"
#include "../glib/SignalConnection.h"
#include "MediaNames.h"

namespace orivex::gtk {

/// The desktop's own chooser for photos and videos, several at once; in a sandbox its portal, which reaches every
/// folder of the visitor. Destroying it closes it without an answer. Main thread.
class MediaChooser {
 public:
  /// Opens at once. `chosen` gets the paths, none when the visitor chose nothing; it may destroy this object.
  MediaChooser(GtkWindow* parent, const MediaFilter& filter, std::function<void(std::vector<std::string>)> chosen);
  MediaChooser(const MediaChooser&) = delete;
  MediaChooser& operator=(const MediaChooser&) = delete;
  ~MediaChooser();

 private:
  void responded(GtkNativeDialog* dialog, int response);

  const std::function<void(std::vector<std::string>)> chosen_;
  GRef<GtkFileChooserNative> chooser_;
  SignalConnection responded_;
};

}  // namespace orivex::gtk

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orivex/platform/base/Alive.h"
#include "orivex/platform/base/Once.h"
#include "orivex/platform/ports/DocumentPicker.h"
#include "orivex/platform/ports/WebEngine.h"

namespace orivex {

class View;

/// Answers the file inputs of a page with the device's document picker. The page may read what it was given for as long
/// as this object lives: nobody tells when it has read enough. Main thread.
class PageFileChooser {
 public:
  using Completion = Once<void(std::vector<std::string> paths)>;

  /// Opens the picker over the window of `view`. `completion` gets no paths when the visitor cancels, when the device
  /// refuses access to every file, and while another picker is open; of several files for an input that takes one it
  /// gets the first. It is dropped without a call when this object or the window goes first.
  void choose(const FileChooserRequest& request, View& view, Completion completion);

 private:
  std::vector<std::string> accessible(const std::vector<Url>& files, bool multiple);

  std::vector<std::unique_ptr<FileAccess>> accesses_;
  Alive alive_;
};

}  // namespace orivex

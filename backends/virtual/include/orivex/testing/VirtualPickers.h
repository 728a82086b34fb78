#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "orivex/platform/base/Observers.h"
#include "orivex/platform/ports/Camera.h"
#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/MainQueue.h"
#include "orivex/platform/ports/PhotoLibrary.h"
#include "orivex/platform/ui/View.h"

namespace orivex::testing {

/// What opens over a screen and waits for the visitor, in whose place a test answers. It closes with the screen.
template <class Options, class Answer>
class OpenPanel {
 public:
  explicit OpenPanel(MainQueue& queue) : queue_(queue) {}

  void open(const Options& options, View& view, Once<void(Answer)> completion) {
    options_ = options;
    completion_ = std::move(completion);
    leaves_ = view.observeLeaving([this] { close(); });
  }

  /// Nothing while it is closed.
  const std::optional<Options>& options() const { return options_; }

  void close() {
    options_.reset();
    completion_ = nullptr;
  }

  /// Closes it and calls back from the queue.
  void answer(Answer answer) {
    options_.reset();
    // On the heap: GCC 12 loses track of a variant inside a moved closure and warns of it.
    queue_.async([completion = std::move(completion_), kept = std::make_unique<Answer>(std::move(answer))]() mutable {
      std::move(completion)(std::move(*kept));
    });
  }

 private:
  MainQueue& queue_;
  std::optional<Options> options_;
  Once<void(Answer)> completion_;
  Subscription leaves_;
};

/// A camera screen that a test answers.
class VirtualCamera final : public Camera {
 public:
  explicit VirtualCamera(MainQueue& queue) : queue_(queue), screen_(queue) {}

  void present(const CameraOptions& options, View& view, Once<void(CameraOutcome)> completion) override;

  /// Of the open camera screen; nothing when none is open.
  const std::optional<CameraOptions>& presented() const { return screen_.options(); }

  /// Closes the screen and calls back from the queue.
  void finish(CameraOutcome outcome) { screen_.answer(std::move(outcome)); }

 private:
  const MainQueue& queue_;
  OpenPanel<CameraOptions, CameraOutcome> screen_;
};

/// A sheet that a test answers.
class VirtualPhotoLibrary final : public PhotoLibrary {
 public:
  explicit VirtualPhotoLibrary(MainQueue& queue) : queue_(queue), sheet_(queue) {}

  void show(const PhotoLibraryOptions& options, View& view, Once<void(PhotoSelection)> selected) override;

  /// Of the open sheet; nothing when none is open.
  const std::optional<PhotoLibraryOptions>& shown() const { return sheet_.options(); }

  /// The visitor's answer: closes the sheet; a selection calls back from the queue.
  void select(PhotoSelection selection) { sheet_.answer(std::move(selection)); }
  void close() { sheet_.close(); }

 private:
  const MainQueue& queue_;
  OpenPanel<PhotoLibraryOptions, PhotoSelection> sheet_;
};

/// A chooser that a test answers, with files that the test has made: as on a real device, nothing else is opened.
class VirtualDocumentPicker final : public DocumentPicker {
 public:
  explicit VirtualDocumentPicker(MainQueue& queue) : queue_(queue), chooser_(queue) {}

  void present(const DocumentPickerOptions& options, View& view, Once<void(DocumentPickerOutcome)> completion) override;
  std::variant<std::unique_ptr<FileAccess>, Failure> startAccess(const Url& file) override;

  /// Of the open chooser; nothing when none is open.
  const std::optional<DocumentPickerOptions>& presented() const { return chooser_.options(); }

  /// The visitor's answer: closes the chooser and calls back from the queue.
  void pick(const std::vector<std::string>& paths);
  void cancel() { chooser_.answer(PickingCancelled{}); }

  /// Access to `path` is refused from now on.
  void refuse(const std::string& path) { refused_.insert(path); }

  /// How many accesses have been started and not ended.
  int openAccesses() const { return *openAccesses_; }

 private:
  MainQueue& queue_;
  OpenPanel<DocumentPickerOptions, DocumentPickerOutcome> chooser_;
  std::set<std::string> refused_;
  std::shared_ptr<int> openAccesses_ = std::make_shared<int>(0);
};

/// Remembers the menus that it was asked for.
class VirtualDocumentInteraction final : public DocumentInteraction {
 public:
  struct Menu {
    std::string file;  ///< its address
    Rect rect;
    bool operator==(const Menu&) const = default;
  };

  explicit VirtualDocumentInteraction(const MainQueue& queue) : queue_(queue) {}

  bool presentOptionsMenu(const Url& file, const Rect& rect, View& view) override;

  /// At first there are applications for every file.
  void setApplications(bool any) { applications_ = any; }

  /// The menus that were shown.
  const std::vector<Menu>& menus() const { return menus_; }
  void forgetMenus() { menus_.clear(); }

  /// Whether the last of them is still open: it closes with the screen of its view.
  bool isOpen() const { return open_; }

 private:
  const MainQueue& queue_;
  bool applications_ = true;
  bool open_ = false;
  std::vector<Menu> menus_;
  Subscription leaves_;
};

}  // namespace orivex::testing

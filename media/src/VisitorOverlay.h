#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "orivex/platform/base/Alive.h"

namespace orivex {

class Window;

/// The one overlay as its users share it, so that none hides what another has to say: a message is never cut short by
/// an upload that goes on or ends, and an upload that goes on is shown again once a message is over. Main thread.
class VisitorOverlay {
 public:
  static VisitorOverlay& shared();

  /// Shows a message until `endMessage`, or until an upload begins; a notice takes no input from what lies behind.
  void showMessage(const std::string& text);
  void showNotice(const std::string& text);

  /// Dismisses whatever is shown, unless an upload goes on.
  void endMessage();

  /// Takes the uploads that go on in `window` off the overlay for good.
  void hideUploads(const Window& window);

  /// One upload, from its start until this object goes. When nothing has happened to it for ten seconds, the visitor
  /// reads what it waits for.
  class Upload {
   public:
    /// Shows the spinner at once, over the window that the overlay has now; `detail` says what is on its way.
    explicit Upload(std::string detail);
    Upload(const Upload&) = delete;
    Upload& operator=(const Upload&) = delete;
    ~Upload();

    /// `fraction` of the body is sent: a percentage below 1, then the spinner while the server works.
    void progress(float fraction);

    /// What the visitor's "✕" does while this upload is shown.
    void setOnCancel(std::function<void()> onCancel) { onCancel_ = std::move(onCancel); }

    /// Lets the overlay show over the window that it had when this upload began.
    void returnToWindow() const;

    /// Takes this upload off the overlay. Without it, an upload that goes away leaves the overlay as it is. Screen
    /// readers say that the last one is done if the server has stored it.
    void dismiss(bool isStored);

   private:
    friend VisitorOverlay;
    bool isSeen() const;
    void show() const;
    void watch(double seconds);
    std::optional<float> fraction_;  // nothing while the spinner shows
    double lastNews_;
    bool isStanding_ = false;
    const std::string detail_;
    std::weak_ptr<Window> window_;  // of the overlay when the upload began
    std::function<void()> onCancel_;
    Alive alive_;
  };

  VisitorOverlay(const VisitorOverlay&) = delete;
  VisitorOverlay& operator=(const VisitorOverlay&) = delete;

 private:
  friend class ProcessState;
  VisitorOverlay() = default;
  ~VisitorOverlay() = default;

  void cancel() const;

  std::vector<const Upload*> uploads_;  // that go on and are seen, the oldest first
  bool hasMessage_ = false;
};

}  // namespace orivex

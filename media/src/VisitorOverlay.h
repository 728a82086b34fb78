#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

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

  /// Takes the uploads that go on off the overlay for good.
  void hideUploads();

  /// One upload, from its start until this object goes.
  class Upload {
   public:
    /// Shows the spinner at once.
    Upload();
    Upload(const Upload&) = delete;
    Upload& operator=(const Upload&) = delete;
    ~Upload();

    /// `fraction` of the body is sent: a percentage below 1, then the spinner while the server works.
    void progress(float fraction);

    /// Lets the overlay show over the window that it had when this upload began.
    void returnToWindow() const;

    /// Takes this upload off the overlay. Without it, an upload that goes away leaves the overlay as it is.
    void dismiss();

   private:
    friend VisitorOverlay;
    bool isSeen() const;
    void show() const;
    std::optional<float> fraction_;  // nothing while the spinner shows
    std::weak_ptr<Window> window_;   // of the overlay when the upload began
  };

  VisitorOverlay(const VisitorOverlay&) = delete;
  VisitorOverlay& operator=(const VisitorOverlay&) = delete;

 private:
  VisitorOverlay() = default;
  ~VisitorOverlay() = default;

  std::vector<const Upload*> uploads_;  // that go on and are seen, the oldest first
  bool hasMessage_ = false;
};

}  // namespace orivex

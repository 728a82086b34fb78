#pragma once

#include <functional>
#include <memory>

#include <gtk/gtk.h>

#include "../../av/ClipPlayer.h"
#include "../../glib/GRef.h"
#include "../../glib/SignalConnection.h"
#include "../library/MediaSelection.h"
#include "PreviewStrip.h"

namespace orivex::gtk {

/// One item large, over the grid: to look at, a video to play, to swipe on, and to select. Main thread.
class PhotoPreview {
 public:
  struct Handlers {
    std::function<void(const MediaItemPtr&)> toggle;
    std::function<void(const MediaItemPtr& last)> closed;  ///< with what was looked at last
    std::function<void()> unplayable;                      ///< the video cannot be played
  };

  PhotoPreview(PipelineThreads threads, const MediaReader& reader, ThumbnailLoader& thumbnails,
               const MediaSelection& selection, Handlers handlers);
  PhotoPreview(const PhotoPreview&) = delete;
  PhotoPreview& operator=(const PhotoPreview&) = delete;
  ~PhotoPreview() = default;

  GtkWidget* widget() const { return revealer_.get(); }
  bool isOpen() const { return static_cast<bool>(shown_); }

  void open(std::shared_ptr<const MediaItems> items, std::size_t position);
  void close();

  /// The album has changed: stays with the item when it is still there, and else goes on to the one that has taken its
  /// place, or closes.
  void refresh(const std::shared_ptr<const MediaItems>& items);

  /// Ends a video that plays.
  void stop();

  /// Shows the mark of what is looked at anew.
  void selectionChanged();

 private:
  void build();
  GtkWidget* bar();
  GtkWidget* playButton();
  void playOrStop();
  void play();
  void moveTo(std::size_t position);
  void toggle();
  void reveal(bool isOpen);
  bool keyPressed(guint key, GdkModifierType modifiers);
  bool plainKeyPressed(guint key);

  const PipelineThreads threads_;
  const MediaSelection& selection_;
  const Handlers handlers_;
  PreviewStrip strip_;
  std::shared_ptr<const MediaItems> items_;
  std::size_t position_ = 0;
  MediaItemPtr shown_;
  std::string spoken_;  // of it
  GRef<GtkWidget> revealer_;
  GtkWidget* title_ = nullptr;
  GtkWidget* mark_ = nullptr;  // the button, with a disc that holds the number
  GtkWidget* disc_ = nullptr;
  GtkWidget* length_ = nullptr;
  GtkWidget* play_ = nullptr;
  std::unique_ptr<ClipPlayer> player_;
  ThumbnailLoader& thumbnails_;
  Subscription reading_;  // of the video that the visitor wants to see
  SignalConnections connections_;
};

}  // namespace orivex::gtk

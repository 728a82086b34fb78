#pragma once

#include <functional>
#include <vector>

#include <gtk/gtk.h>

#include "../glib/SignalConnection.h"
#include "library/MediaCatalog.h"
#include "library/MediaItem.h"

namespace orivex::gtk {

/// What an album shows that has nothing in it, or nothing that may be read, with the way to look elsewhere.
class EmptyPage {
 public:
  /// `browse` is called when the visitor wants to look elsewhere.
  EmptyPage(const std::vector<MediaRoot>& roots, const MediaFilter& filter, std::function<void()> browse);
  EmptyPage(const EmptyPage&) = delete;
  EmptyPage& operator=(const EmptyPage&) = delete;
  ~EmptyPage() = default;

  /// To be put into a parent, which then owns it.
  GtkWidget* widget() const { return widget_; }

  /// Looks again why there is nothing.
  void update();

 private:
  const std::vector<MediaRoot> roots_;
  const MediaFilter filter_;
  GtkWidget* const widget_;
  GtkWidget* const icon_;
  GtkWidget* const title_;
  GtkWidget* const hint_;
  SignalConnection pressed_;
};

}  // namespace orivex::gtk

#pragma once

#include <gtk/gtk.h>

#include "../../glib/GRef.h"

#include "orivex/platform/ui/View.h"
#include "orivex/platform/ui/ViewController.h"

namespace orivex::gtk {

/// A view that shows a widget that was made elsewhere.
class WidgetView : public View {
 public:
  explicit WidgetView(GRef<GtkWidget> widget) : widget_(std::move(widget)) {}

  /// Null for a view that shows nothing.
  GtkWidget* widget() const { return widget_.get(); }
  void setWidget(GRef<GtkWidget> widget) {
    widget_ = std::move(widget);
    changed(ViewChange::content);
  }

 private:
  GRef<GtkWidget> widget_;
};

/// A screen whose view shows a widget of the host.
class WidgetScreen final : public ViewController {
 public:
  explicit WidgetScreen(GRef<GtkWidget> widget) : shown_(std::make_shared<WidgetView>(std::move(widget))) {}

  void setWidget(GRef<GtkWidget> widget) { shown_->setWidget(std::move(widget)); }

 protected:
  std::shared_ptr<View> makeView(const Rect& frame) override {
    shown_->setFrame(frame);
    return shown_;
  }

 private:
  const std::shared_ptr<WidgetView> shown_;
};

/// The widget that shows what `view` holds besides its subviews; null for a plain view.
GRef<GtkWidget> contentWidgetFor(View& view);

/// Brings `widget`, made by `contentWidgetFor` of the same view, up to date.
void updateContentWidget(GtkWidget* widget, const View& view);

/// Gives `widget`, made by `contentWidgetFor` of the same view, its place in a view that has been given this size.
void allocateContentWidget(GtkWidget* widget, const View& view, int width, int height);

}  // namespace orivex::gtk

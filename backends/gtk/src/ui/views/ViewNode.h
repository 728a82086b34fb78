#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <gtk/gtk.h>

#include "../../glib/GRef.h"
#include "../../glib/SignalConnection.h"
#include "../Canvas.h"
#include "EdgePanSource.h"

#include "orivex/platform/ui/View.h"

namespace orivex::gtk {

/// The mirror of one view and of those below it: a canvas with, for some kinds of views, a widget for the content, and
/// one canvas per subview on top of it. Owned by the node above; `parent` is null for the root of a window.
class ViewNode final : public ViewMirror, private CanvasDelegate {
 public:
  ViewNode(View& view, ViewNode* parent);
  ~ViewNode() override;

  GtkWidget* widget() const { return canvas_.get(); }

  /// Called with each new size before what lies below is placed; for the root, whose size GTK decides.
  void setResizeHandler(std::function<void(int width, int height)> handler) { resized_ = std::move(handler); }

  void viewChanged(ViewChange change) override;
  void viewDestroyed() override;
  std::shared_ptr<View> snapshot(const View& view) override;

 private:
  int minimumSize(GtkOrientation orientation, int forSize) override;
  void allocate(int width, int height) override;
  void snapshot(GtkSnapshot* snapshot) override;

  void exchangeContent();
  void applyVisibility();
  void syncSubviews();
  void syncGestures();
  void place() const;
  double scale() const;
  void queuePlacement() const;
  bool isFocusBesideScreens() const;
  bool takesInput() const;
  bool isAllocating() const;

  View* view_;
  ViewNode* const parent_;
  GRef<GtkWidget> canvas_;
  GRef<GtkWidget> content_;
  std::vector<std::unique_ptr<ViewNode>> children_;
  std::vector<std::unique_ptr<EdgePanSource>> gestures_;
  std::function<void(int width, int height)> resized_;
  bool allocating_ = false;
  SignalConnection pressed_;
  SignalConnection textSizeChanged_;
};

}  // namespace orivex::gtk

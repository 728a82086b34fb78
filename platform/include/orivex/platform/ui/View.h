#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "orivex/Export.h"
#include "orivex/platform/base/Geometry.h"
#include "orivex/platform/base/Interface.h"
#include "orivex/platform/base/Observers.h"

namespace orivex {

class ScreenEdgePanGesture;
class View;
class Window;

/// What of a view changed.
enum class ViewChange {
  placement,   ///< frame, transform
  visibility,  ///< alpha, hidden, whether it takes input
  drawing,     ///< background, corners, clipping, shadow
  subviews,
  gestures,
  content,  ///< what a subclass adds
};

/// A plain area that a view draws.
struct Shape {
  Rect frame;
  Color color;
  double cornerRadius = 0;
  bool operator==(const Shape&) const = default;
};

/// A backend's picture of one view. The view does not own it; whichever of the two ends first cuts the tie.
class ViewMirror : public Interface {
 public:
  virtual void viewChanged(ViewChange change) = 0;

  /// The view is being destroyed: forget it.
  virtual void viewDestroyed() = 0;

  /// What `view`, which is this one or lies below it, shows now with its subviews, as a view of its own; null when
  /// nothing has been drawn yet.
  virtual std::shared_ptr<View> snapshot(const View& view) = 0;
};

/// A rectangle on the screen, as plain data that can be read back: a backend mirrors it. Views are made with
/// std::make_shared and live on the main thread.
class ORIVEX_API View : public std::enable_shared_from_this<View> {
 public:
  View() = default;
  explicit View(Rect frame) : frame_(frame) {}
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View();

  /// In the superview's points, before the transform.
  const Rect& frame() const { return frame_; }
  void setFrame(const Rect& frame);
  Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }
  Point center() const { return frame_.center(); }
  void setCenter(Point center);

  /// From 0 to 1. A view with alpha 0 neither shows nor takes input.
  double alpha() const { return alpha_; }
  void setAlpha(double alpha) { set(alpha_, alpha, ViewChange::visibility); }

  /// Whether the view and those below it take input while they show.
  bool isUserInteractionEnabled() const { return interactive_; }
  void setUserInteractionEnabled(bool enabled) { set(interactive_, enabled, ViewChange::visibility); }

  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden) { set(hidden_, hidden, ViewChange::visibility); }

  const Translation& transform() const { return transform_; }
  void setTransform(const Translation& transform) { set(transform_, transform, ViewChange::placement); }

  /// Whether the view shows larger, around its centre, by as much as the visitor's text is, as far as the superview has
  /// room. Its points stay as they are. Set it before the view is shown.
  bool growsWithText() const { return growsWithText_; }
  void setGrowsWithText(bool grows) { growsWithText_ = grows; }

  const std::optional<Color>& backgroundColor() const { return background_; }
  void setBackgroundColor(const std::optional<Color>& color) { set(background_, color, ViewChange::drawing); }

  /// Says what lies on the background, under a page and the subviews, of a view of that size. Both count in the units
  /// of a page, which are larger than points where the visitor's text is.
  using Shapes = std::function<std::vector<Shape>(const Size&)>;
  const Shapes& backgroundShapes() const { return shapes_; }
  void setBackgroundShapes(Shapes shapes) {
    shapes_ = std::move(shapes);
    changed(ViewChange::drawing);
  }

  double cornerRadius() const { return cornerRadius_; }
  void setCornerRadius(double radius) { set(cornerRadius_, radius, ViewChange::drawing); }

  bool clipsToBounds() const { return clips_; }
  void setClipsToBounds(bool clips) { set(clips_, clips, ViewChange::drawing); }

  /// Whether the view throws a soft shadow on what lies around it in its superview.
  bool castsShadow() const { return shadow_; }
  void setCastsShadow(bool casts) { set(shadow_, casts, ViewChange::drawing); }

  int tag() const { return tag_; }
  void setTag(int tag) { tag_ = tag; }

  /// This view or the first one below it with the tag; null when there is none.
  std::shared_ptr<View> viewWithTag(int tag);

  /// From back to front.
  const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
  void addSubview(const std::shared_ptr<View>& view);
  void insertSubview(const std::shared_ptr<View>& view, std::size_t index);
  bool hasSubview(const View& view) const { return view.superview_ == this; }
  void removeFromSuperview();
  void removeAllSubviews();
  View* superview() const { return superview_; }

  /// The window that shows the tree in which this view is; null outside of one.
  Window* window() const;

  /// Whether the screen of this view shows: from when it is about to appear until it is about to disappear. A view that
  /// belongs to no screen does not.
  bool isShowing() const;

  /// What a screen tells its root view when it is about to appear or to disappear.
  void setShowing(bool showing);

  /// Calls `handler` when the screen of this view is about to disappear: what was opened for it closes.
  [[nodiscard]] Subscription observeLeaving(std::function<void()> handler) { return leaving_.add(std::move(handler)); }

  void addGesture(const std::shared_ptr<ScreenEdgePanGesture>& gesture);
  const std::vector<std::shared_ptr<ScreenEdgePanGesture>>& gestures() const { return gestures_; }

  /// Takes the keyboard focus away from whatever has it in this view.
  void endEditing();

  /// What the view shows now, as an unmoving picture; null when it is not on a screen.
  std::shared_ptr<View> snapshotView() const;

  /// Called after the size has changed, and when `layOut` asks for it.
  void setLayoutHandler(std::function<void()> handler) { layoutHandler_ = std::move(handler); }

  /// Places what this view and those below it hold once more: what lies around the window has changed.
  void layOut();

  /// Ties a backend's mirror to this view; null unties it.
  void setMirror(ViewMirror* mirror) { mirror_ = mirror; }

 protected:
  void changed(ViewChange change) const;

 private:
  friend class Window;

  void notifyLeaving() const;

  template <class Value>
  void set(Value& field, const Value& value, ViewChange change) {
    if (field == value) return;
    field = value;
    changed(change);
  }

  Rect frame_;
  double alpha_ = 1;
  bool hidden_ = false;
  bool interactive_ = true;
  Translation transform_;
  bool growsWithText_ = false;
  std::optional<Color> background_;
  Shapes shapes_;
  double cornerRadius_ = 0;
  bool clips_ = false;
  bool shadow_ = false;
  int tag_ = 0;
  std::vector<std::shared_ptr<View>> subviews_;
  std::vector<std::shared_ptr<ScreenEdgePanGesture>> gestures_;
  std::function<void()> layoutHandler_;
  View* superview_ = nullptr;
  Window* shownIn_ = nullptr;  // set on a window's content view only
  ViewMirror* mirror_ = nullptr;
  std::optional<bool> showing_;  // set on the root view of a screen only
  Observers<> leaving_;
};

}  // namespace orivex

#include "ViewNode.h"

#include <algorithm>
#include <cmath>

#include "../Widgets.h"
#include "ContentWidgets.h"

#include "orivex/platform/ui/ContentViews.h"

namespace orivex::gtk {
namespace {

// Below this a view neither shows nor takes input.
constexpr double leastVisibleAlpha = 0.01;

constexpr GdkRGBA shadowColor{0, 0, 0, 0.3F};
constexpr float shadowBlur = 16;  // points

// What a view that grows leaves free of its superview.
constexpr double widestShare = 0.9;

// By how much the visitor wants text larger than usual.
double textScale() {
  constexpr double usualDpi = 96.0 * 1024;
  int dpi = 0;
  g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &dpi, nullptr);
  return std::max(1.0, dpi / usualDpi);  // negative where nobody has said
}

int points(double length) {
  return static_cast<int>(std::lround(std::max(0.0, length)));
}

Rect boundsOf(const View& view) {
  return {0, 0, view.frame().width, view.frame().height};
}

GskRoundedRect outlineOf(const Rect& frame, double cornerRadius) {
  const graphene_rect_t bounds{{static_cast<float>(frame.x), static_cast<float>(frame.y)},
                               {static_cast<float>(frame.width), static_cast<float>(frame.height)}};
  GskRoundedRect outline;
  gsk_rounded_rect_init_from_rect(&outline, &bounds, static_cast<float>(cornerRadius));
  return outline;
}

// What the window's style paints; deprecated since GTK 4.10, which has nothing in its place.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS
void paintBackground(GtkSnapshot* snapshot, GtkWidget* window, const graphene_size_t& size) {
  gtk_snapshot_render_background(snapshot, gtk_widget_get_style_context(window), 0, 0, size.width, size.height);
}
G_GNUC_END_IGNORE_DEPRECATIONS

void draw(GtkSnapshot* snapshot, const Shape& shape) {
  const auto outline = outlineOf(shape.frame, shape.cornerRadius);
  const GdkRGBA color{static_cast<float>(shape.color.red), static_cast<float>(shape.color.green),
                      static_cast<float>(shape.color.blue), static_cast<float>(shape.color.alpha)};
  if (shape.cornerRadius > 0) gtk_snapshot_push_rounded_clip(snapshot, &outline);
  gtk_snapshot_append_color(snapshot, &color, &outline.bounds);
  if (shape.cornerRadius > 0) gtk_snapshot_pop(snapshot);
}

// Has no animation between being pressed and not.
constexpr const char* stillClass = "orivex-still";
constexpr const char* css = ".orivex-still { transition: none; }";

/// Shows a part of a window as if nobody pressed a button in it, nor just had. The last one has the focus.
class Unpressed {
 public:
  explicit Unpressed(GtkWidget* shown) : focus_(gtk_root_get_focus(gtk_widget_get_root(shown))) {
    installStyle(css, GTK_STYLE_PROVIDER_PRIORITY_USER + 1);
    release(shown);
  }
  Unpressed(const Unpressed&) = delete;
  Unpressed& operator=(const Unpressed&) = delete;
  ~Unpressed() {
    for (const auto& [widget, pressed] : released_) {
      gtk_widget_remove_css_class(widget.get(), stillClass);
      gtk_widget_set_state_flags(widget.get(), pressed, FALSE);
    }
  }

 private:
  void release(GtkWidget* widget) {
    const auto pressed = static_cast<GtkStateFlags>(gtk_widget_get_state_flags(widget) & GTK_STATE_FLAG_ACTIVE);
    if (pressed || widget == focus_) {
      released_.emplace_back(GRef<GtkWidget>::share(widget), pressed);
      gtk_widget_add_css_class(widget, stillClass);
      gtk_widget_unset_state_flags(widget, GTK_STATE_FLAG_ACTIVE);
      gtk_widget_queue_draw(widget);
    }
    for (auto* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child)) {
      release(child);
    }
  }

  GtkWidget* const focus_;
  std::vector<std::pair<GRef<GtkWidget>, GtkStateFlags>> released_;
};

}  // namespace

ViewNode::ViewNode(View& view, ViewNode* parent)
    : view_(&view),
      parent_(parent),
      canvas_(GRef<GtkWidget>::sink(canvasNew(*this))),
      content_(contentWidgetFor(view)) {
  if (content_) gtk_widget_set_parent(content_.get(), canvas_.get());
  if (const auto* const button = dynamic_cast<const Button*>(&view)) {
    pressed_ = SignalConnection::connect(content_.get(), "clicked", [this, button] {
      const auto kept = view_ ? view_->weak_from_this().lock() : nullptr;
      if (kept) button->press();
    });
  }
  view.setMirror(this);
  applyVisibility();
  syncSubviews();
  syncGestures();
  if (view.growsWithText()) {
    textSizeChanged_ =
        SignalConnection::connect(gtk_settings_get_default(), "notify::gtk-xft-dpi", [this] { queuePlacement(); });
  }
}

ViewNode::~ViewNode() {
  if (view_) view_->setMirror(nullptr);
  gestures_.clear();
  children_.clear();
  canvasForget(canvas_.get());
  if (content_) gtk_widget_unparent(content_.get());
  if (gtk_widget_get_parent(canvas_.get())) gtk_widget_unparent(canvas_.get());
}

void ViewNode::viewDestroyed() {
  view_ = nullptr;
  children_.clear();
}

void ViewNode::viewChanged(ViewChange change) {
  if (!view_) return;
  switch (change) {
    case ViewChange::placement:
      queuePlacement();
      break;
    case ViewChange::visibility:
      applyVisibility();
      break;
    case ViewChange::drawing:
      gtk_widget_queue_draw(canvas_.get());
      break;
    case ViewChange::subviews:
      syncSubviews();
      break;
    case ViewChange::gestures:
      syncGestures();
      break;
    case ViewChange::content:
      if (dynamic_cast<const WidgetView*>(view_)) {
        exchangeContent();
      } else if (content_) {
        updateContentWidget(content_.get(), *view_);
      }
      break;
  }
}

// A host has put another widget in the place of the one that showed.
void ViewNode::exchangeContent() {
  auto next = contentWidgetFor(*view_);
  if (next.get() == content_.get()) return;
  if (content_) gtk_widget_unparent(content_.get());
  content_ = std::move(next);
  if (content_) gtk_widget_insert_after(content_.get(), canvas_.get(), nullptr);
}

// With the window's background, on which the host's widgets lie and which their own picture would lack. Drawn anew:
// what the visitor has just pressed changes with the next frame, and what waits for that has no picture.
std::shared_ptr<View> ViewNode::snapshot(const View& /*view*/) {
  auto* const canvas = canvas_.get();
  if (!gtk_widget_get_mapped(canvas)) return nullptr;
  const int width = gtk_widget_get_width(canvas);
  const int height = gtk_widget_get_height(canvas);
  const graphene_size_t size{static_cast<float>(width), static_cast<float>(height)};
  auto* const drawing = gtk_snapshot_new();
  paintBackground(drawing, GTK_WIDGET(gtk_widget_get_root(canvas)), size);
  auto* const parent = gtk_widget_get_parent(canvas);
  graphene_point_t origin{};
  const graphene_point_t zero{};
  // A window that has just been opened has no size before its first frame.
  if (width > 0 && height > 0 && gtk_widget_compute_point(canvas, parent, &zero, &origin)) {
    gtk_widget_measure(canvas, GTK_ORIENTATION_VERTICAL, width, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_allocate(canvas, width, height, -1, gsk_transform_translate(nullptr, &origin));
    const Unpressed unpressed(canvas);
    origin = {-origin.x, -origin.y};
    gtk_snapshot_translate(drawing, &origin);
    gtk_widget_snapshot_child(parent, canvas, drawing);
  }
  const auto still = GRef<GdkPaintable>::adopt(gtk_snapshot_free_to_paintable(drawing, &size));
  GtkWidget* const picture = decorative(gtk_picture_new_for_paintable(still.get()));
  gtk_picture_set_content_fit(GTK_PICTURE(picture), GTK_CONTENT_FIT_FILL);
  gtk_widget_set_can_target(picture, FALSE);
  return std::make_shared<WidgetView>(GRef<GtkWidget>::sink(picture));
}

// In another part of the window, which the screens do not cover. A button may well be what has brought the screens up.
bool ViewNode::isFocusBesideScreens() const {
  if (parent_) return parent_->isFocusBesideScreens();
  auto* const window = gtk_widget_get_root(canvas_.get());
  auto* const focus = window ? gtk_root_get_focus(window) : nullptr;
  return focus && !GTK_IS_BUTTON(focus) && !isInside(focus, canvas_.get()) && !isInside(canvas_.get(), focus);
}

bool ViewNode::takesInput() const {
  return view_->isUserInteractionEnabled() && !view_->isHidden() && view_->alpha() > leastVisibleAlpha;
}

void ViewNode::applyVisibility() {
  const bool active = takesInput();
  const bool appears = active && !gtk_widget_get_can_target(canvas_.get());
  gtk_widget_set_visible(canvas_.get(), !view_->isHidden());
  gtk_widget_set_opacity(canvas_.get(), view_->alpha());
  gtk_widget_set_can_target(canvas_.get(), active);
  gtk_widget_set_can_focus(canvas_.get(), active);
  // A page that has just been revealed is what the visitor wants to type into, unless that happens elsewhere.
  if (appears && content_ && !isFocusBesideScreens()) gtk_widget_grab_focus(content_.get());
}

void ViewNode::syncSubviews() {
  std::vector<std::unique_ptr<ViewNode>> next;
  GtkWidget* before = content_.get();
  for (const auto& subview : view_->subviews()) {
    const auto kept = std::find_if(children_.begin(), children_.end(), [&](const std::unique_ptr<ViewNode>& child) {
      return child && child->view_ == subview.get();
    });
    next.push_back(kept != children_.end() ? std::move(*kept) : std::make_unique<ViewNode>(*subview, this));
    GtkWidget* const child = next.back()->widget();
    if (gtk_widget_get_parent(child) != canvas_.get() || gtk_widget_get_prev_sibling(child) != before) {
      gtk_widget_insert_after(child, canvas_.get(), before);
    }
    before = child;
  }
  children_ = std::move(next);
  gtk_widget_queue_resize(canvas_.get());
}

void ViewNode::syncGestures() {
  gestures_.clear();
  for (const auto& gesture : view_->gestures()) {
    gestures_.push_back(std::make_unique<EdgePanSource>(canvas_.get(), gesture));
  }
}

bool ViewNode::isAllocating() const {
  return allocating_ || (parent_ && parent_->isAllocating());
}

void ViewNode::queuePlacement() const {
  // During an allocation the pass that is under way places this view too; asking for another would never end.
  if (!parent_ || parent_->isAllocating()) return;
  gtk_widget_queue_allocate(parent_->widget());
}

int ViewNode::minimumSize(GtkOrientation orientation, int /*forSize*/) {
  int minimum = 0;
  // A widget of the host must not be squeezed under its own minimum; what the component shows fits any size.
  if (content_ && view_ && dynamic_cast<WidgetView*>(view_)) {
    gtk_widget_measure(content_.get(), orientation, -1, &minimum, nullptr, nullptr, nullptr);
  }
  for (const auto& child : children_) {
    int least = 0;
    gtk_widget_measure(child->widget(), orientation, -1, &least, nullptr, nullptr, nullptr);
    minimum = std::max(minimum, least);
  }
  return minimum;
}

void ViewNode::allocate(int width, int height) {
  if (!view_) return;
  allocating_ = true;
  if (resized_) resized_(width, height);
  if (content_) allocateContentWidget(content_.get(), *view_, width, height);
  for (const auto& child : children_) child->place();
  allocating_ = false;
}

void ViewNode::place() const {
  if (!view_) return;
  const Rect& frame = view_->frame();
  const Translation& shift = view_->transform();
  const double larger = scale();
  const graphene_point_t origin{static_cast<float>(frame.x + shift.x - frame.width * (larger - 1) / 2),
                                static_cast<float>(frame.y + shift.y - frame.height * (larger - 1) / 2)};
  GskTransform* transform = gsk_transform_translate(nullptr, &origin);
  if (larger > 1) transform = gsk_transform_scale(transform, static_cast<float>(larger), static_cast<float>(larger));
  gtk_widget_allocate(canvas_.get(), points(frame.width), points(frame.height), -1, transform);
}

double ViewNode::scale() const {
  if (!view_->growsWithText() || !parent_ || !parent_->view_) return 1;
  const auto& frame = view_->frame();
  const auto& room = parent_->view_->frame();
  const double most = widestShare * std::min(room.width / frame.width, room.height / frame.height);
  return std::max(1.0, std::min(textScale(), most));
}

void ViewNode::snapshot(GtkSnapshot* snapshot) {
  if (!view_) return;
  const auto bounds = boundsOf(*view_);
  const auto outline = outlineOf(bounds, view_->cornerRadius());
  if (view_->castsShadow()) gtk_snapshot_append_outset_shadow(snapshot, &outline, &shadowColor, 0, 0, 0, shadowBlur);
  if (const auto& color = view_->backgroundColor()) draw(snapshot, {bounds, *color, view_->cornerRadius()});
  if (const auto& shapesFor = view_->backgroundShapes()) {
    const double larger = textScale();
    gtk_snapshot_save(snapshot);
    gtk_snapshot_scale(snapshot, static_cast<float>(larger), static_cast<float>(larger));
    for (const auto& shape : shapesFor({bounds.width / larger, bounds.height / larger})) draw(snapshot, shape);
    gtk_snapshot_restore(snapshot);
  }
  if (view_->clipsToBounds()) gtk_snapshot_push_rounded_clip(snapshot, &outline);
  canvasSnapshotChildren(canvas_.get(), snapshot);
  if (view_->clipsToBounds()) gtk_snapshot_pop(snapshot);
}

}  // namespace orivex::gtk

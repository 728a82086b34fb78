#include "Sheet.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "../Contained.h"
#include "Widgets.h"

namespace orivex::gtk {
namespace {

// All in points. In a window that is larger than these it is a dialog.
constexpr int sheetWidth = 500;
constexpr int sheetHeight = 360;

constexpr int greatestWidth = 560;
constexpr int greatestLargeWidth = 720;
constexpr double tallest = 4.0 / 3;   // of a large dialog's width
constexpr int leastGapAbove = 48;     // of the mask, which stays in reach of a tap
constexpr int leastGapAround = 24;    // of the mask around a dialog
constexpr double smallest = 0.9;      // size of a dialog as it appears
constexpr double closingShare = 0.3;  // of the panel's height, past which the grabber lets it go
constexpr guint duration = 250;       // milliseconds; the mask's transition below lasts as long

constexpr const char* css = R"css(
.orivex-sheet-mask { background-color: transparent; transition: background-color 250ms ease-out; }
.orivex-sheet-mask.open { background-color: rgba(0, 0, 0, 0.4); }
.orivex-sheet { border-radius: 16px 16px 0 0; }
.orivex-sheet.large { border-radius: 0; }
.orivex-sheet.dialog { border-radius: 16px; box-shadow: 0 4px 24px rgba(0, 0, 0, 0.3); }
.orivex-sheet > .grabber { padding: 6px 24px 8px; }
.orivex-sheet > .grabber > * { min-width: 36px; min-height: 4px; border-radius: 2px; background-color: rgba(140, 140, 140, 0.8); }
.orivex-sheet.dialog > .grabber { opacity: 0; }
)css";

// The keys by which a window moves its focus: from a sheet they would lead out.
std::optional<GtkDirectionType> directionOf(guint key, GdkModifierType modifiers) {
  switch (key) {
    case GDK_KEY_Tab:
      return modifiers & GDK_SHIFT_MASK ? GTK_DIR_TAB_BACKWARD : GTK_DIR_TAB_FORWARD;
    case GDK_KEY_ISO_Left_Tab:
      return GTK_DIR_TAB_BACKWARD;
    case GDK_KEY_Up:
      return GTK_DIR_UP;
    case GDK_KEY_Down:
      return GTK_DIR_DOWN;
    case GDK_KEY_Left:
      return GTK_DIR_LEFT;
    case GDK_KEY_Right:
      return GTK_DIR_RIGHT;
    default:
      return std::nullopt;
  }
}

}  // namespace

Sheet::Sheet(GtkOverlay* parent, MainQueue& mainQueue, GtkWidget* content, const std::string& label,
             Once<void()> onClosed, Extent extent)
    : parent_(parent),
      mainQueue_(mainQueue),
      onClosed_(std::move(onClosed)),
      extent_(extent),
      mask_(GRef<GtkWidget>::sink(styled(canvasNew(*this), "orivex-sheet-mask"))),
      focusBefore_() {
  auto* const window = gtk_widget_get_root(GTK_WIDGET(parent));
  g_weak_ref_init(&focusBefore_, window ? gtk_root_get_focus(window) : nullptr);
  build(content, label);
  gtk_overlay_add_overlay(parent_, mask_.get());
  listen();
  takeFocus();
  gtk_widget_add_css_class(mask_.get(), "open");
  gtk_widget_set_child_visible(panel_, TRUE);
  animateTo(1);
}

Sheet::~Sheet() {
  releaseInput();
  detach();
  canvasForget(mask_.get());
  g_weak_ref_clear(&focusBefore_);
}

void Sheet::build(GtkWidget* content, const std::string& label) {
  installStyle(css);
  panel_ = GTK_WIDGET(g_object_new(GTK_TYPE_OVERLAY, "overflow", GTK_OVERFLOW_HIDDEN, "accessible-role",
                                   GTK_ACCESSIBLE_ROLE_DIALOG, nullptr));
  gtk_accessible_update_property(GTK_ACCESSIBLE(panel_), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(),
                                 GTK_ACCESSIBLE_PROPERTY_MODAL, TRUE, -1);
  gtk_widget_add_css_class(panel_, "orivex-sheet");
  makeLight(panel_);
  if (extent_ == Extent::large) {
    gtk_widget_add_css_class(panel_, "large");
  } else {
    grabber_ =
        styled(decorative(boxNew(GTK_ORIENTATION_VERTICAL, 0, {decorative(boxNew(GTK_ORIENTATION_HORIZONTAL, 0, {}))})),
               "grabber");
    gtk_widget_set_halign(grabber_, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(grabber_, GTK_ALIGN_START);
    gtk_widget_set_can_target(grabber_, FALSE);
    gtk_overlay_add_overlay(GTK_OVERLAY(panel_), grabber_);
  }
  gtk_overlay_set_child(GTK_OVERLAY(panel_), content);
  gtk_widget_set_child_visible(panel_, FALSE);
  gtk_widget_set_parent(panel_, mask_.get());
}

int Sheet::minimumSize(GtkOrientation /*orientation*/, int /*forSize*/) {
  return 0;
}

// The window may be resized while the panel shows.
void Sheet::allocate(int width, int height) {
  isDialog_ = width > sheetWidth && height > sheetHeight;
  (isDialog_ ? gtk_widget_add_css_class : gtk_widget_remove_css_class)(panel_, "dialog");
  gtk_widget_set_opacity(panel_, isDialog_ ? shown_ : 1);

  const bool large = extent_ == Extent::large;
  int least = 0;
  int natural = 0;
  gtk_widget_measure(panel_, GTK_ORIENTATION_HORIZONTAL, -1, &least, nullptr, nullptr, nullptr);
  const int widest = large ? (isDialog_ ? greatestLargeWidth : width) : greatestWidth;
  const int panelWidth = std::max(least, std::min(widest, isDialog_ ? width - 2 * leastGapAround : width));
  gtk_widget_measure(panel_, GTK_ORIENTATION_VERTICAL, panelWidth, &least, &natural, nullptr, nullptr);
  if (large) natural = isDialog_ ? static_cast<int>(panelWidth * tallest) : height;
  const int gap = isDialog_ ? 2 * leastGapAround : large ? 0 : leastGapAbove;
  const int panelHeight = std::max(least, std::min(natural, height - gap));

  const double scale = isDialog_ ? smallest + (1 - smallest) * shown_ : 1;
  const double y = isDialog_ ? (height - panelHeight * scale) / 2 : height - panelHeight * shown_;
  const graphene_point_t origin{static_cast<float>((width - panelWidth * scale) / 2), static_cast<float>(y)};
  auto* const place = gsk_transform_translate(nullptr, &origin);
  gtk_widget_allocate(panel_, panelWidth, panelHeight, -1,
                      gsk_transform_scale(place, static_cast<float>(scale), static_cast<float>(scale)));
}

void Sheet::snapshot(GtkSnapshot* snapshot) {
  canvasSnapshotChildren(mask_.get(), snapshot);
}

void Sheet::animateTo(double shown) {
  const auto step = [](double value, gpointer sheet) noexcept {
    contained([&] { static_cast<Sheet*>(sheet)->show(value); });
  };
  if (animation_) adw_animation_pause(animation_.get());
  animation_ = GRef<AdwAnimation>::adopt(adw_timed_animation_new(
      GTK_WIDGET(parent_), shown_, shown, duration, adw_callback_animation_target_new(step, this, nullptr)));
  animationDone_ = SignalConnection::connect(animation_.get(), "done", [this] {
    if (closing_) finishLater();
  });
  adw_animation_play(animation_.get());
}

void Sheet::show(double shown) {
  shown_ = shown;
  gtk_widget_queue_allocate(mask_.get());
}

void Sheet::listen() {
  auto* const click = gtk_gesture_click_new();
  // Before the panel's buttons: of a finger that one of these has taken it would not see the end, and miss the next.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(mask_.get(), GTK_EVENT_CONTROLLER(click));
  input_.add(click, "pressed", [this](int /*count*/, double x, double y) { pressedOnMask_ = !isOnPanel(x, y); });
  input_.add(click, "released", [this](int /*count*/, double x, double y) {
    if (pressedOnMask_ && !isOnPanel(x, y) && extent_ != Extent::large) close();
  });
  auto* const keys = gtk_event_controller_key_new();
  gtk_widget_add_controller(mask_.get(), keys);
  input_.add(keys, "key-pressed",
             [this](guint key, guint /*code*/, GdkModifierType modifiers) { return keyPressed(key, modifiers); });
  if (auto* const window = gtk_widget_get_root(mask_.get())) {
    input_.add(window, "notify::focus-widget", [this, window] { focusMoved(window); });
  }
  parentDestroyed_ = SignalConnection::connect(parent_, "destroy", [this] {
    parent_ = nullptr;
    closing_ = true;
    finishLater();
  });
  if (grabber_) listenToGrabber();
}

// On the mask, which stays where it is as the finger takes the panel along.
void Sheet::listenToGrabber() {
  auto* const drag = gtk_gesture_drag_new();
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(drag), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(mask_.get(), GTK_EVENT_CONTROLLER(drag));
  input_.add(drag, "drag-begin", [this, drag](double x, double y) {
    const graphene_point_t point{static_cast<float>(x), static_cast<float>(y)};
    graphene_rect_t bounds;
    grabbed_ = !isDialog_ && gtk_widget_compute_bounds(grabber_, mask_.get(), &bounds) &&
               graphene_rect_contains_point(&bounds, &point);
    gtk_gesture_set_state(drag, grabbed_ ? GTK_EVENT_SEQUENCE_CLAIMED : GTK_EVENT_SEQUENCE_DENIED);
    if (grabbed_) adw_animation_pause(animation_.get());
  });
  input_.add(drag, "drag-update",
             [this](double /*x*/, double y) { show(1 - std::clamp(y / gtk_widget_get_height(panel_), 0.0, 0.99)); });
  input_.add(drag, "drag-end", [this] {
    if (std::exchange(grabbed_, false)) shown_ < 1 - closingShare ? close() : animateTo(1);
  });
}

void Sheet::close() {
  if (closing_) return;
  closing_ = true;
  releaseInput();
  gtk_widget_remove_css_class(mask_.get(), "open");
  animateTo(0);
}

void Sheet::releaseInput() {
  mapped_.disconnect();
  input_.disconnect();
  gtk_widget_set_can_target(mask_.get(), FALSE);
  auto* const window = gtk_widget_get_root(mask_.get());
  GtkWidget* const focus = window ? gtk_root_get_focus(window) : nullptr;
  const auto before = GRef<GtkWidget>::adopt(static_cast<GtkWidget*>(g_weak_ref_get(&focusBefore_)));
  // Only what the sheet took is given back: the visitor may have moved on to another part of the window.
  if (window && (!focus || isInside(focus, mask_.get()))) {
    gtk_root_set_focus(window, before && gtk_widget_get_root(before.get()) == window ? before.get() : nullptr);
  }
  gtk_widget_set_can_focus(mask_.get(), FALSE);
}

// At once from the page, and to the content, unless that takes it itself, as soon as that is on the screen: before, it
// cannot take any.
void Sheet::takeFocus() {
  mapped_ = SignalConnection::connect(panel_, "map", [this] {
    mapped_.disconnect();
    focusMoved(gtk_widget_get_root(panel_));
  });
  movingFocus_ = true;
  if (auto* const window = gtk_widget_get_root(panel_)) gtk_root_set_focus(window, nullptr);
  movingFocus_ = false;
}

void Sheet::moveFocus(GtkDirectionType direction) {
  const bool turns = direction == GTK_DIR_TAB_FORWARD || direction == GTK_DIR_TAB_BACKWARD;
  movingFocus_ = true;
  if (!gtk_widget_child_focus(panel_, direction) && turns) {
    // Past the last one: with the focus nowhere the search begins at the other end.
    if (auto* const window = gtk_widget_get_root(panel_)) gtk_root_set_focus(window, nullptr);
    if (!gtk_widget_child_focus(panel_, direction)) {
      // Content that takes no focus leaves it to the panel, so that keys still reach the sheet.
      gtk_widget_set_focusable(panel_, TRUE);
      gtk_widget_grab_focus(panel_);
    }
  }
  movingFocus_ = false;
}

void Sheet::detach() {
  parentDestroyed_.disconnect();
  animationDone_.disconnect();
  if (animation_) adw_animation_pause(animation_.get());
  if (auto* const parent = std::exchange(parent_, nullptr)) gtk_overlay_remove_overlay(parent, mask_.get());
}

bool Sheet::isOnPanel(double x, double y) const {
  GtkWidget* const hit = gtk_widget_pick(mask_.get(), x, y, GTK_PICK_DEFAULT);
  return hit && isInside(hit, panel_);
}

bool Sheet::keyPressed(guint key, GdkModifierType modifiers) {
  if (modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK)) return false;
  if (key == GDK_KEY_Escape) {
    close();
    return true;
  }
  const auto direction = directionOf(key, modifiers);
  if (direction) moveFocus(*direction);
  return direction.has_value();
}

// A page under the sheet may ask for the focus by itself.
void Sheet::focusMoved(GtkRoot* window) {
  if (movingFocus_ || gtk_widget_in_destruction(GTK_WIDGET(window)) || !gtk_widget_get_mapped(panel_)) return;
  GtkWidget* const focus = gtk_root_get_focus(window);
  const bool escaped = !focus || (!isInside(focus, mask_.get()) && isInside(focus, GTK_WIDGET(parent_)));
  if (escaped) moveFocus(GTK_DIR_TAB_FORWARD);
}

// From the queue: the widget is in the middle of its own work, and the owner may destroy the sheet.
void Sheet::finishLater() {
  parentDestroyed_.disconnect();
  animationDone_.disconnect();
  mainQueue_.async(alive_.guard([this] {
    detach();
    auto closed = std::move(onClosed_);
    std::move(closed)();
  }));
}

}  // namespace orivex::gtk

#include "Sheet.h"

#include <optional>
#include <utility>

#include <adwaita.h>

#include "Widgets.h"

namespace orivex::gtk {
namespace {

constexpr int greatestWidth = 560;    // points
constexpr int leastGapAbove = 48;     // points of the mask that stay in reach of a tap
constexpr guint slideDuration = 250;  // milliseconds; the mask's transition below lasts as long

constexpr const char* css = R"css(
.orivex-sheet-mask { background-color: transparent; transition: background-color 250ms ease-out; }
.orivex-sheet-mask.open { background-color: rgba(0, 0, 0, 0.4); }
.orivex-sheet { border-radius: 16px 16px 0 0; }
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
             Once<void()> onClosed)
    : parent_(parent), mainQueue_(mainQueue), onClosed_(std::move(onClosed)), focusBefore_() {
  auto* const window = gtk_widget_get_root(GTK_WIDGET(parent));
  g_weak_ref_init(&focusBefore_, window ? gtk_root_get_focus(window) : nullptr);
  build(content, label);
  gtk_overlay_add_overlay(parent_, mask_.get());
  listen();
  takeFocus();
  gtk_widget_add_css_class(mask_.get(), "open");
  gtk_revealer_set_reveal_child(revealer_, TRUE);
}

Sheet::~Sheet() {
  releaseInput();
  detach();
  g_weak_ref_clear(&focusBefore_);
}

void Sheet::build(GtkWidget* content, const std::string& label) {
  installStyle(css);
  panel_ = GTK_WIDGET(g_object_new(GTK_TYPE_BOX, "orientation", GTK_ORIENTATION_VERTICAL, "overflow",
                                   GTK_OVERFLOW_HIDDEN, "accessible-role", GTK_ACCESSIBLE_ROLE_DIALOG, nullptr));
  gtk_accessible_update_property(GTK_ACCESSIBLE(panel_), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(),
                                 GTK_ACCESSIBLE_PROPERTY_MODAL, TRUE, -1);
  gtk_widget_add_css_class(panel_, "orivex-sheet");
  makeLight(panel_);
  gtk_box_append(GTK_BOX(panel_), content);

  GtkWidget* const clamp = adw_clamp_new();
  adw_clamp_set_maximum_size(ADW_CLAMP(clamp), greatestWidth);
  adw_clamp_set_tightening_threshold(ADW_CLAMP(clamp), greatestWidth);
  adw_clamp_set_child(ADW_CLAMP(clamp), panel_);

  revealer_ = GTK_REVEALER(gtk_revealer_new());
  gtk_revealer_set_transition_type(revealer_, GTK_REVEALER_TRANSITION_TYPE_SLIDE_UP);
  gtk_revealer_set_transition_duration(revealer_, slideDuration);
  gtk_revealer_set_child(revealer_, clamp);
  gtk_widget_set_vexpand(GTK_WIDGET(revealer_), TRUE);
  gtk_widget_set_valign(GTK_WIDGET(revealer_), GTK_ALIGN_END);
  gtk_widget_set_margin_top(GTK_WIDGET(revealer_), leastGapAbove);

  mask_ =
      GRef<GtkWidget>::sink(styled(boxNew(GTK_ORIENTATION_VERTICAL, 0, {GTK_WIDGET(revealer_)}), "orivex-sheet-mask"));
}

void Sheet::listen() {
  auto* const click = gtk_gesture_click_new();
  // Before the panel's buttons: of a finger that one of these has taken it would not see the end, and miss the next.
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
  gtk_widget_add_controller(mask_.get(), GTK_EVENT_CONTROLLER(click));
  input_.add(click, "pressed", [this](int /*count*/, double x, double y) { pressedOnMask_ = !isOnPanel(x, y); });
  input_.add(click, "released", [this](int /*count*/, double x, double y) {
    if (pressedOnMask_ && !isOnPanel(x, y)) close();
  });
  auto* const keys = gtk_event_controller_key_new();
  gtk_widget_add_controller(mask_.get(), keys);
  input_.add(keys, "key-pressed",
             [this](guint key, guint /*code*/, GdkModifierType modifiers) { return keyPressed(key, modifiers); });
  if (auto* const window = gtk_widget_get_root(mask_.get())) {
    input_.add(window, "notify::focus-widget", [this, window] { focusMoved(window); });
  }
  end_.add(revealer_, "notify::child-revealed", [this] {
    if (closing_ && !gtk_revealer_get_child_revealed(revealer_)) finishLater();
  });
  end_.add(parent_, "destroy", [this] {
    parent_ = nullptr;
    closing_ = true;
    finishLater();
  });
}

void Sheet::close() {
  if (closing_) return;
  closing_ = true;
  releaseInput();
  gtk_widget_remove_css_class(mask_.get(), "open");
  gtk_revealer_set_reveal_child(revealer_, FALSE);
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
  end_.disconnect();
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
  end_.disconnect();
  mainQueue_.async(alive_.guard([this] {
    detach();
    auto closed = std::move(onClosed_);
    std::move(closed)();
  }));
}

}  // namespace orivex::gtk

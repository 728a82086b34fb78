#include "PhotoGrid.h"

#include <algorithm>
#include <cmath>

#include "../../Contained.h"
#include "../../ui/Widgets.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr guint fewestColumns = 3;
constexpr double columnWidth = 130;  // points, at least, where more than the fewest fit

// A grid widget makes thirty rows of cells for a long model, however few can be seen. A screen's worth comes at once,
// the others a few in each frame after the sheet has slid in, when nobody waits for the first pictures any more.
constexpr std::size_t firstCells = 24;
constexpr gint64 slideMicroseconds = 300'000;
constexpr std::size_t cellsPerFrame = 9;
constexpr std::size_t rowsMade = 30;

// Points beyond the edges in which thumbnails are loaded already.
constexpr double margin = 140;

}  // namespace

PhotoGrid::PhotoGrid(ThumbnailLoader& thumbnails, const MediaSelection& selection, PhotoGridHandlers handlers)
    : thumbnails_(thumbnails), selection_(selection), handlers_(std::move(handlers)) {
  list_.setLimit(firstCells);
  auto* const shown = gtk_no_selection_new(G_LIST_MODEL(g_object_ref(list_.model())));
  view_ = styled(gtk_grid_view_new(GTK_SELECTION_MODEL(shown), factoryNew()), "orivex-photos");
  gtk_grid_view_set_min_columns(GTK_GRID_VIEW(view_), fewestColumns);
  gtk_grid_view_set_max_columns(GTK_GRID_VIEW(view_), fewestColumns);
  setAccessibleLabel(view_, tr("照片和视频"));
  scrolled_ = GRef<GtkWidget>::sink(gtk_scrolled_window_new());
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled_.get()), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled_.get()), view_);
  gtk_widget_set_vexpand(scrolled_.get(), TRUE);
  auto* const adjustment = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled_.get()));
  connections_.add(adjustment, "value-changed", [this] { loadLater(); });
  connections_.add(adjustment, "changed", [this] { loadLater(); });
  listenToInput();
}

PhotoGrid::~PhotoGrid() {
  if (loading_ != 0) g_source_remove(loading_);
  if (revealing_ != 0) gtk_widget_remove_tick_callback(view_, revealing_);
  // The cells end with the widgets, which somebody may hold a moment longer than this.
  for (auto* const cell : cells()) cell->setRequest(Subscription());
}

GtkListItemFactory* PhotoGrid::factoryNew() {
  auto* const factory = gtk_signal_list_item_factory_new();
  connections_.add(factory, "setup", [](GtkListItem* row) { gtk_list_item_set_child(row, PhotoCell::make()); });
  connections_.add(factory, "bind", [this](GtkListItem* row) { bind(row); });
  connections_.add(factory, "unbind", [](GtkListItem* row) {
    if (auto* const cell = PhotoCell::of(gtk_list_item_get_child(row))) cell->bind(nullptr);
  });
  return factory;
}

void PhotoGrid::bind(GtkListItem* row) {
  auto& cell = *PhotoCell::of(gtk_list_item_get_child(row));
  cell.bind(list_.items()->at(gtk_list_item_get_position(row)));
  setMarks(cell);
  if (const auto* const known = thumbnails_.find(cell.item())) cell.setThumbnail(*known);
  loadLater();
}

// Gestures on the grid as a whole: it has dozens of cells, and a finger is on one of them.
void PhotoGrid::listenToInput() {
  connections_.add(view_, "activate", [this](guint position) { handlers_.open(position); });
  auto* const click = gtk_gesture_click_new();
  connections_.add(click, "released", [this, click](int /*count*/, double x, double y) { tapped(click, x, y); });
  auto* const press = gtk_gesture_long_press_new();
  connections_.add(press, "pressed", [this, press](double x, double y) { longPressed(press, x, y); });
  auto* const keys = gtk_event_controller_key_new();
  connections_.add(keys, "key-pressed",
                   [this](guint key, guint /*code*/, GdkModifierType modifiers) { return keyPressed(key, modifiers); });
  for (auto* const controller : {GTK_EVENT_CONTROLLER(click), GTK_EVENT_CONTROLLER(press), keys}) {
    gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
    gtk_widget_add_controller(view_, controller);
  }
  gtk_gesture_group(click, press);
}

void PhotoGrid::tapped(GtkGesture* click, double x, double y) {
  graphene_point_t inside{};
  auto* const cell = cellAt(x, y, inside);
  if (!cell) return;
  gtk_gesture_set_state(click, GTK_EVENT_SEQUENCE_CLAIMED);
  if (cell->isOnCircle(inside)) {
    handlers_.toggle(MediaItemPtr(cell->item()));
  } else if (const auto position = positionOf(cell->item())) {
    handlers_.open(*position);
  }
}

void PhotoGrid::longPressed(GtkGesture* press, double x, double y) {
  graphene_point_t inside{};
  auto* const cell = cellAt(x, y, inside);
  const auto position = cell ? positionOf(cell->item()) : std::nullopt;
  if (!position) return;
  gtk_gesture_set_state(press, GTK_EVENT_SEQUENCE_CLAIMED);
  handlers_.open(*position);
}

bool PhotoGrid::keyPressed(guint key, GdkModifierType modifiers) {
  if (modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK)) return false;
  if (key == GDK_KEY_space || key == GDK_KEY_KP_Space) {
    if (const auto* const cell = focusedCell()) handlers_.toggle(MediaItemPtr(cell->item()));
    return true;
  }
  // By itself the grid makes each of thousands of cells a stop of the Tab key.
  if (key == GDK_KEY_Tab || key == GDK_KEY_ISO_Left_Tab) {
    const bool isBackward = key == GDK_KEY_ISO_Left_Tab || (modifiers & GDK_SHIFT_MASK) != 0;
    handlers_.leave(isBackward ? GTK_DIR_TAB_BACKWARD : GTK_DIR_TAB_FORWARD);
    return true;
  }
  return false;
}

void PhotoGrid::show(std::shared_ptr<const MediaItems> items, bool fromTop) {
  list_.show(std::move(items));
  if (fromTop) gtk_adjustment_set_value(gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled_.get())), 0);
  reveal();
}

std::optional<std::size_t> PhotoGrid::positionOf(const MediaItemPtr& item) const {
  const auto& items = *list_.items();
  const auto place = std::find(items.begin(), items.end(), item);
  return place == items.end() ? std::nullopt : std::optional(static_cast<std::size_t>(place - items.begin()));
}

void PhotoGrid::reveal() {
  if (revealing_ != 0 || list_.count() == list_.items()->size()) return;
  const auto tick = [](GtkWidget*, GdkFrameClock* clock, gpointer data) noexcept -> gboolean {
    auto* const grid = static_cast<PhotoGrid*>(data);
    if (contained([&] { return grid->revealMore(gdk_frame_clock_get_frame_time(clock)); })) return G_SOURCE_CONTINUE;
    grid->revealing_ = 0;
    return G_SOURCE_REMOVE;
  };
  revealing_ = gtk_widget_add_tick_callback(view_, tick, this, nullptr);
}

// Returns whether there is still more.
bool PhotoGrid::revealMore(gint64 frameTime) {
  if (revealStart_ == 0) revealStart_ = frameTime;
  if (frameTime - revealStart_ < slideMicroseconds) return true;
  const std::size_t most = rowsMade * gtk_grid_view_get_max_columns(GTK_GRID_VIEW(view_));
  list_.setLimit(list_.count() < most ? list_.count() + cellsPerFrame : SIZE_MAX);
  return list_.count() < list_.items()->size();
}

std::vector<PhotoCell*> PhotoGrid::cells() const {
  std::vector<PhotoCell*> cells;
  for (auto* row = gtk_widget_get_first_child(view_); row; row = gtk_widget_get_next_sibling(row)) {
    auto* const cell = PhotoCell::of(gtk_widget_get_first_child(row));
    if (cell && cell->item()) cells.push_back(cell);
  }
  return cells;
}

// The cell under a point of the grid, and where that is inside of it.
PhotoCell* PhotoGrid::cellAt(double x, double y, graphene_point_t& inside) const {
  GtkWidget* hit = gtk_widget_pick(view_, x, y, GTK_PICK_DEFAULT);
  while (hit && hit != view_ && !isCanvas(hit)) hit = gtk_widget_get_parent(hit);
  auto* const cell = PhotoCell::of(hit);
  const graphene_point_t point{static_cast<float>(x), static_cast<float>(y)};
  const bool isShown = cell && cell->item() && gtk_widget_compute_point(view_, hit, &point, &inside);
  return isShown ? cell : nullptr;
}

PhotoCell* PhotoGrid::focusedCell() const {
  auto* const root = gtk_widget_get_root(view_);
  GtkWidget* const focus = root ? gtk_root_get_focus(root) : nullptr;
  auto* const cell = focus ? PhotoCell::of(gtk_widget_get_first_child(focus)) : nullptr;
  return cell && cell->item() ? cell : nullptr;
}

void PhotoGrid::selectionChanged() {
  for (auto* const cell : cells()) setMarks(*cell);
}

void PhotoGrid::setMarks(PhotoCell& cell) const {
  cell.setMarks(selection_.numberOf(*cell.item()), selection_.isKindExcluded(*cell.item()));
}

void PhotoGrid::focus(std::size_t position) {
  list_.setLimit(position + 1);
  gtk_widget_activate_action(view_, "list.scroll-to-item", "u", static_cast<guint>(position));
  wantsFocus_ = position;
  takeFocus();
  loadLater();
}

void PhotoGrid::takeFocus() {
  if (!wantsFocus_ || *wantsFocus_ >= list_.items()->size()) return;
  for (auto* const cell : cells()) {
    if (cell->item() != list_.items()->at(*wantsFocus_) || !gtk_widget_get_mapped(cell->widget())) continue;
    if (gtk_widget_grab_focus(gtk_widget_get_parent(cell->widget()))) wantsFocus_.reset();
    return;
  }
}

std::size_t PhotoGrid::shownThumbnails() const {
  const auto all = cells();
  return static_cast<std::size_t>(std::count_if(
      all.begin(), all.end(), [&](const PhotoCell* cell) { return cell->hasThumbnail() && isInView(*cell); }));
}

// Once the cells are where they will be seen: after this frame's layout.
void PhotoGrid::loadLater() {
  if (loading_ != 0) return;
  const auto loads = [](gpointer grid) noexcept -> gboolean {
    static_cast<PhotoGrid*>(grid)->loading_ = 0;
    contained([&] { static_cast<PhotoGrid*>(grid)->load(); });
    return G_SOURCE_REMOVE;
  };
  loading_ = g_idle_add_full(GDK_PRIORITY_REDRAW + 1, loads, this, nullptr);
}

void PhotoGrid::load() {
  fitColumns();
  takeFocus();
  for (auto* const cell : cells()) {
    if (cell->hasThumbnail()) continue;
    if (!isInView(*cell)) {
      cell->setRequest(Subscription());
    } else if (!cell->isWaiting()) {
      cell->setRequest(thumbnails_.request(cell->item(), [this, cell](const LoadedThumbnail& thumbnail) {
        cell->setThumbnail(thumbnail);
        if (thumbnail.isBroken()) handlers_.broken(MediaItemPtr(cell->item()));
      }));
    }
  }
}

bool PhotoGrid::isInView(const PhotoCell& cell) const {
  graphene_rect_t bounds;
  if (!gtk_widget_get_mapped(cell.widget()) || !gtk_widget_compute_bounds(cell.widget(), scrolled_.get(), &bounds)) {
    return false;
  }
  const double top = static_cast<double>(bounds.origin.y);
  const double bottom = top + static_cast<double>(bounds.size.height);
  return bottom > -margin && top < gtk_widget_get_height(scrolled_.get()) + margin;
}

void PhotoGrid::fitColumns() {
  auto* const view = GTK_GRID_VIEW(view_);
  const int width = gtk_widget_get_width(scrolled_.get());
  const auto columns = std::max(fewestColumns, static_cast<guint>(std::max(0.0, std::floor(width / columnWidth))));
  if (columns == gtk_grid_view_get_max_columns(view)) return;
  // The lower bound may never pass the upper one.
  gtk_grid_view_set_min_columns(view, fewestColumns);
  gtk_grid_view_set_max_columns(view, columns);
  gtk_grid_view_set_min_columns(view, columns);
}

}  // namespace orivex::gtk

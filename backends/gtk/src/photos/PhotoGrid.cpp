#include "PhotoGrid.h"

#include <algorithm>
#include <cmath>

#include "../Contained.h"

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
  auto* const factory = gtk_signal_list_item_factory_new();
  connections_.push_back(SignalConnection::connect<&PhotoGrid::setUp>(factory, "setup", this));
  connections_.push_back(SignalConnection::connect<&PhotoGrid::bind>(factory, "bind", this));
  connections_.push_back(SignalConnection::connect<&PhotoGrid::unbind>(factory, "unbind", this));
  auto* const shown = gtk_no_selection_new(G_LIST_MODEL(g_object_ref(list_.model())));
  view_ = GTK_GRID_VIEW(gtk_grid_view_new(GTK_SELECTION_MODEL(shown), factory));
  gtk_widget_add_css_class(GTK_WIDGET(view_), "orivex-photos");
  gtk_grid_view_set_min_columns(view_, fewestColumns);
  gtk_grid_view_set_max_columns(view_, fewestColumns);
  gtk_accessible_update_property(GTK_ACCESSIBLE(view_), GTK_ACCESSIBLE_PROPERTY_LABEL, "照片和视频", -1);
  connections_.push_back(SignalConnection::connect<&PhotoGrid::activated>(view_, "activate", this));

  scrolled_ = GRef<GtkWidget>::sink(gtk_scrolled_window_new());
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled_.get()), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled_.get()), GTK_WIDGET(view_));
  gtk_widget_set_vexpand(scrolled_.get(), TRUE);
  auto* const adjustment = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled_.get()));
  connections_.push_back(SignalConnection::connect<&PhotoGrid::scrolled>(adjustment, "value-changed", this));
  connections_.push_back(SignalConnection::connect<&PhotoGrid::scrolled>(adjustment, "changed", this));
  listenToInput();
}

PhotoGrid::~PhotoGrid() {
  if (looking_ != 0) g_source_remove(looking_);
  if (revealing_ != 0) gtk_widget_remove_tick_callback(GTK_WIDGET(view_), revealing_);
  // The cells end with the widgets, which somebody may hold a moment longer than this.
  for (auto* const cell : *cells_) cell->setRequest(Subscription());
}

// Gestures on the grid as a whole: it has dozens of cells, and a finger is on one of them.
void PhotoGrid::listenToInput() {
  auto* const click = gtk_gesture_click_new();
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
  connections_.push_back(SignalConnection::connect<&PhotoGrid::released>(click, "released", this));
  gtk_widget_add_controller(GTK_WIDGET(view_), GTK_EVENT_CONTROLLER(click));
  auto* const press = gtk_gesture_long_press_new();
  gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(press), GTK_PHASE_CAPTURE);
  connections_.push_back(SignalConnection::connect<&PhotoGrid::longPressed>(press, "pressed", this));
  gtk_widget_add_controller(GTK_WIDGET(view_), GTK_EVENT_CONTROLLER(press));
  gtk_gesture_group(click, press);
  auto* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  connections_.push_back(SignalConnection::connect<&PhotoGrid::keyPressed>(keys, "key-pressed", this));
  gtk_widget_add_controller(GTK_WIDGET(view_), keys);
}

void PhotoGrid::setUp(GtkSignalListItemFactory* /*factory*/, GtkListItem* row) {
  gtk_list_item_set_child(row, PhotoCell::make(cells_));
}

void PhotoGrid::bind(GtkSignalListItemFactory* /*factory*/, GtkListItem* row) {
  auto& cell = *PhotoCell::of(gtk_list_item_get_child(row));
  cell.bind(MediaList::itemOf(gtk_list_item_get_item(row)));
  cell.setMarks(selection_.numberOf(*cell.item()), selection_.isKindExcluded(*cell.item()));
  if (const auto* const known = thumbnails_.find(cell.item())) cell.setThumbnail(*known);
  lookLater();
}

void PhotoGrid::unbind(GtkSignalListItemFactory* /*factory*/, GtkListItem* row) {
  PhotoCell::of(gtk_list_item_get_child(row))->bind(nullptr);
}

void PhotoGrid::show(std::shared_ptr<const MediaItems> items, bool fromTop) {
  list_.show(std::move(items));
  if (fromTop) gtk_adjustment_set_value(gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scrolled_.get())), 0);
  reveal();
}

void PhotoGrid::reveal() {
  if (revealing_ != 0 || list_.count() == list_.items()->size()) return;
  const auto tick = [](GtkWidget*, GdkFrameClock* clock, gpointer grid) noexcept -> gboolean {
    return contained([&] { return static_cast<PhotoGrid*>(grid)->frame(clock); });
  };
  revealing_ = gtk_widget_add_tick_callback(GTK_WIDGET(view_), tick, this, nullptr);
}

gboolean PhotoGrid::frame(GdkFrameClock* clock) {
  const auto now = gdk_frame_clock_get_frame_time(clock);
  if (revealStart_ == 0) revealStart_ = now;
  if (now - revealStart_ < slideMicroseconds) return G_SOURCE_CONTINUE;
  const std::size_t most = rowsMade * gtk_grid_view_get_max_columns(view_);
  list_.setLimit(list_.count() < most ? list_.count() + cellsPerFrame : SIZE_MAX);
  if (list_.count() < list_.items()->size()) return G_SOURCE_CONTINUE;
  revealing_ = 0;
  return G_SOURCE_REMOVE;
}

void PhotoGrid::selectionChanged() {
  for (auto* const cell : *cells_) {
    if (cell->item()) cell->setMarks(selection_.numberOf(*cell->item()), selection_.isKindExcluded(*cell->item()));
  }
}

void PhotoGrid::focus(std::size_t position) {
  list_.setLimit(position + 1);
  gtk_widget_activate_action(GTK_WIDGET(view_), "list.scroll-to-item", "u", static_cast<guint>(position));
  wantsFocus_ = position;
  takeFocus();
  lookLater();
}

void PhotoGrid::takeFocus() {
  const auto& items = *list_.items();
  const auto position = wantsFocus_.value_or(items.size());
  const auto found = std::find_if(cells_->begin(), cells_->end(), [&](const PhotoCell* cell) {
    return position < items.size() && cell->item() == items[position] && gtk_widget_get_mapped(cell->widget());
  });
  if (found == cells_->end() || !gtk_widget_grab_focus(gtk_widget_get_parent((*found)->widget()))) return;
  wantsFocus_.reset();
}

std::size_t PhotoGrid::shownThumbnails() const {
  return static_cast<std::size_t>(std::count_if(cells_->begin(), cells_->end(), [&](const PhotoCell* cell) {
    return cell->item() && cell->hasThumbnail() && isInView(*cell);
  }));
}

void PhotoGrid::scrolled(GtkAdjustment* /*adjustment*/) {
  lookLater();
}

// Once the cells are where they will be seen: after this frame's layout.
void PhotoGrid::lookLater() {
  if (looking_ != 0) return;
  const auto looks = [](gpointer grid) noexcept -> gboolean {
    static_cast<PhotoGrid*>(grid)->looking_ = 0;
    contained([&] { static_cast<PhotoGrid*>(grid)->look(); });
    return G_SOURCE_REMOVE;
  };
  looking_ = g_idle_add_full(GDK_PRIORITY_REDRAW + 1, looks, this, nullptr);
}

void PhotoGrid::look() {
  fitColumns();
  takeFocus();
  std::vector<std::pair<std::size_t, PhotoCell*>> asking;
  for (auto* const cell : *cells_) {
    if (!cell->item() || cell->hasThumbnail()) continue;
    if (!isInView(*cell)) {
      cell->setRequest(Subscription());
    } else if (const auto position = positionOf(*cell); position && !cell->isWaiting()) {
      asking.emplace_back(*position, cell);
    }
  }
  std::sort(asking.begin(), asking.end());
  for (const auto& [position, cell] : asking) {
    cell->setRequest(thumbnails_.request(
        cell->item(), [shown = cell](const LoadedThumbnail& thumbnail) { shown->setThumbnail(thumbnail); }));
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
  const int width = gtk_widget_get_width(scrolled_.get());
  const auto columns = std::max(fewestColumns, static_cast<guint>(std::max(0.0, std::floor(width / columnWidth))));
  if (columns == gtk_grid_view_get_max_columns(view_)) return;
  // The lower bound may never pass the upper one.
  gtk_grid_view_set_min_columns(view_, fewestColumns);
  gtk_grid_view_set_max_columns(view_, columns);
  gtk_grid_view_set_min_columns(view_, columns);
}

}  // namespace orivex::gtk

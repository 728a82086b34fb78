#include "AlbumMenu.h"

#include <algorithm>

#include "../Contained.h"

namespace orivex::gtk {
namespace {

constexpr int coverSide = 56;        // points
constexpr int greatestHeight = 460;  // points; more albums scroll
constexpr std::size_t rowsPerFrame = 8;

GtkWidget* label(const char* style) {
  GtkWidget* const fresh = gtk_label_new(nullptr);
  gtk_label_set_xalign(GTK_LABEL(fresh), 0);
  gtk_label_set_ellipsize(GTK_LABEL(fresh), PANGO_ELLIPSIZE_MIDDLE);
  gtk_widget_add_css_class(fresh, style);
  return fresh;
}

// A picture asks for the width of what it shows; a cover is a square.
GtkWidget* squareAround(GtkWidget* picture) {
  const auto measure = [](GtkWidget*, GtkOrientation, int, int* minimum, int* natural, int* minimumBaseline,
                          int* naturalBaseline) {
    *minimum = *natural = coverSide;
    *minimumBaseline = *naturalBaseline = -1;
  };
  const auto allocate = [](GtkWidget* square, int width, int height, int baseline) {
    gtk_widget_allocate(gtk_widget_get_first_child(square), width, height, baseline, nullptr);
  };
  GtkWidget* const square = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(square), picture);
  gtk_widget_set_layout_manager(square, gtk_custom_layout_new(nullptr, measure, allocate));
  gtk_widget_set_overflow(square, GTK_OVERFLOW_HIDDEN);
  gtk_widget_add_css_class(square, "cover");
  return square;
}

}  // namespace

AlbumMenu::AlbumMenu(ThumbnailLoader& thumbnails, Handlers handlers)
    : thumbnails_(thumbnails),
      handlers_(std::move(handlers)),
      names_(GRef<GtkStringList>::adopt(gtk_string_list_new(nullptr))) {
  build();
}

AlbumMenu::~AlbumMenu() {
  if (adding_ != 0) gtk_widget_remove_tick_callback(view_, adding_);
}

void AlbumMenu::build() {
  auto* const factory = gtk_signal_list_item_factory_new();
  connections_.push_back(SignalConnection::connect<&AlbumMenu::setUp>(factory, "setup", this));
  connections_.push_back(SignalConnection::connect<&AlbumMenu::bind>(factory, "bind", this));
  connections_.push_back(SignalConnection::connect<&AlbumMenu::unbind>(factory, "unbind", this));
  connections_.push_back(SignalConnection::connect<&AlbumMenu::tearDown>(factory, "teardown", this));
  auto* const shown = gtk_no_selection_new(G_LIST_MODEL(g_object_ref(names_.get())));
  view_ = gtk_list_view_new(GTK_SELECTION_MODEL(shown), factory);
  gtk_list_view_set_single_click_activate(GTK_LIST_VIEW(view_), TRUE);
  gtk_widget_add_css_class(view_, "orivex-albums");
  gtk_accessible_update_property(GTK_ACCESSIBLE(view_), GTK_ACCESSIBLE_PROPERTY_LABEL, "相册", -1);
  connections_.push_back(SignalConnection::connect<&AlbumMenu::activated>(view_, "activate", this));

  auto* const scrolled = GTK_SCROLLED_WINDOW(gtk_scrolled_window_new());
  gtk_scrolled_window_set_policy(scrolled, GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_propagate_natural_height(scrolled, TRUE);
  gtk_scrolled_window_set_max_content_height(scrolled, greatestHeight);
  gtk_scrolled_window_set_child(scrolled, view_);
  revealer_ = gtk_revealer_new();
  gtk_revealer_set_transition_type(GTK_REVEALER(revealer_), GTK_REVEALER_TRANSITION_TYPE_SLIDE_DOWN);
  GtkWidget* const elsewhere = gtk_button_new_with_label("浏览…");
  gtk_widget_add_css_class(elsewhere, "browse");
  connections_.push_back(SignalConnection::connect<&AlbumMenu::browseClicked>(elsewhere, "clicked", this));
  GtkWidget* const all = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_add_css_class(all, "orivex-albums-menu");
  gtk_box_append(GTK_BOX(all), GTK_WIDGET(scrolled));
  gtk_box_append(GTK_BOX(all), elsewhere);
  gtk_revealer_set_child(GTK_REVEALER(revealer_), all);
  gtk_widget_set_valign(revealer_, GTK_ALIGN_START);

  mask_ = GRef<GtkWidget>::sink(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
  gtk_widget_add_css_class(mask_.get(), "orivex-albums-mask");
  gtk_widget_set_can_target(mask_.get(), FALSE);
  gtk_box_append(GTK_BOX(mask_.get()), revealer_);
  auto* const click = gtk_gesture_click_new();
  connections_.push_back(SignalConnection::connect<&AlbumMenu::maskPressed>(click, "pressed", this));
  gtk_widget_add_controller(mask_.get(), GTK_EVENT_CONTROLLER(click));
}

bool AlbumMenu::isOpen() const {
  return gtk_revealer_get_reveal_child(GTK_REVEALER(revealer_)) != FALSE;
}

void AlbumMenu::open(const MediaCatalog& catalog, const std::string& folder) {
  albums_ = catalog.albums();
  folder_ = folder;
  gtk_string_list_splice(names_.get(), 0, g_list_model_get_n_items(G_LIST_MODEL(names_.get())), nullptr);
  addLater();
  gtk_widget_set_can_target(mask_.get(), TRUE);
  gtk_widget_add_css_class(mask_.get(), "open");
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_), TRUE);
  gtk_widget_grab_focus(view_);
}

void AlbumMenu::learn(const MediaCatalog& catalog) {
  if (!isOpen()) return;
  for (const auto& album : catalog.albums()) {
    const auto isSame = [&](const Album& known) { return known.folder == album.folder; };
    if (std::none_of(albums_.begin(), albums_.end(), isSame)) albums_.push_back(album);
  }
  addLater();
}

void AlbumMenu::addLater() {
  if (adding_ != 0) return;
  const auto tick = [](GtkWidget*, GdkFrameClock*, gpointer menu) noexcept {
    return contained([&] { return static_cast<AlbumMenu*>(menu)->addSome(); });
  };
  addSome();
  adding_ = gtk_widget_add_tick_callback(view_, tick, this, nullptr);
}

// A list widget makes hundreds of rows at once when it may, and each takes its moment.
gboolean AlbumMenu::addSome() {
  const auto first = g_list_model_get_n_items(G_LIST_MODEL(names_.get()));
  const auto end = std::min(albums_.size(), first + rowsPerFrame);
  for (std::size_t index = first; index < end; ++index)
    gtk_string_list_append(names_.get(), albums_[index].name.c_str());
  if (end < albums_.size()) return G_SOURCE_CONTINUE;
  adding_ = 0;
  return G_SOURCE_REMOVE;
}

void AlbumMenu::close() {
  if (!isOpen()) return;
  gtk_widget_set_can_target(mask_.get(), FALSE);
  gtk_widget_remove_css_class(mask_.get(), "open");
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_), FALSE);
  handlers_.closed();
}

void AlbumMenu::setUp(GtkSignalListItemFactory* /*factory*/, GtkListItem* item) {
  GtkWidget* const cover = gtk_picture_new();
  gtk_picture_set_content_fit(GTK_PICTURE(cover), GTK_CONTENT_FIT_COVER);
  gtk_picture_set_can_shrink(GTK_PICTURE(cover), TRUE);
  GtkWidget* const texts = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
  gtk_widget_set_valign(texts, GTK_ALIGN_CENTER);
  gtk_widget_set_hexpand(texts, TRUE);
  Row row{cover, label("name"), label("count"), gtk_image_new_from_icon_name("object-select-symbolic"), {}};
  gtk_box_append(GTK_BOX(texts), row.name);
  gtk_box_append(GTK_BOX(texts), row.count);
  GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 14);
  for (GtkWidget* const part : {squareAround(cover), texts, row.check}) gtk_box_append(GTK_BOX(box), part);
  gtk_list_item_set_child(item, box);
  rows_.insert_or_assign(item, std::move(row));
}

void AlbumMenu::bind(GtkSignalListItemFactory* /*factory*/, GtkListItem* item) {
  auto& row = rows_.at(item);
  const auto& album = albums_.at(gtk_list_item_get_position(item));
  const bool isChosen = album.folder == folder_;
  const auto count = std::to_string(album.items->size());
  gtk_label_set_text(GTK_LABEL(row.name), album.name.c_str());
  gtk_label_set_text(GTK_LABEL(row.count), count.c_str());
  gtk_widget_set_opacity(row.check, isChosen ? 1 : 0);
  gtk_picture_set_paintable(GTK_PICTURE(row.cover), nullptr);
  const auto text = album.name + ", " + count + "项";
  if (GtkWidget* const around = gtk_widget_get_parent(gtk_list_item_get_child(item))) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(around), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
    gtk_accessible_update_state(GTK_ACCESSIBLE(around), GTK_ACCESSIBLE_STATE_SELECTED, isChosen, -1);
  }
  if (album.items->empty()) return;
  const auto show = [cover = GRef<GtkWidget>::share(row.cover)](const LoadedThumbnail& thumbnail) {
    gtk_picture_set_paintable(GTK_PICTURE(cover.get()), GDK_PAINTABLE(thumbnail.texture.get()));
  };
  if (const auto* const known = thumbnails_.find(album.items->front())) return show(*known);
  row.request = thumbnails_.request(album.items->front(), show);
}

void AlbumMenu::unbind(GtkSignalListItemFactory* /*factory*/, GtkListItem* item) {
  rows_.at(item).request = Subscription();
}

void AlbumMenu::tearDown(GtkSignalListItemFactory* /*factory*/, GtkListItem* item) {
  rows_.erase(item);
}

void AlbumMenu::activated(GtkListView* /*view*/, guint position) {
  const auto folder = albums_.at(position).folder;
  close();
  handlers_.chosen(folder);
}

void AlbumMenu::browseClicked(GtkButton* /*button*/) {
  close();
  handlers_.browse();
}

void AlbumMenu::maskPressed(GtkGestureClick* /*click*/, int /*count*/, double x, double y) {
  GtkWidget* const hit = gtk_widget_pick(mask_.get(), x, y, GTK_PICK_DEFAULT);
  if (!hit || hit == mask_.get()) close();
}

}  // namespace orivex::gtk

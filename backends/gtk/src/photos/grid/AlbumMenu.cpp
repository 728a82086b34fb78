#include "AlbumMenu.h"

#include <algorithm>

#include "../../Contained.h"
#include "../../ui/Announcement.h"
#include "../../ui/Widgets.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr int coverSide = 56;        // points
constexpr int greatestHeight = 460;  // points; more albums scroll
constexpr std::size_t rowsPerFrame = 8;

GtkWidget* labelNew(const std::string& text, const char* style) {
  GtkWidget* const label = styled(gtk_label_new(text.c_str()), style);
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_MIDDLE);
  return label;
}

// A picture asks for the size of what it shows, unless it lies over something else.
GtkWidget* squareAround(GtkWidget* picture) {
  GtkWidget* const square = styled(gtk_overlay_new(), "cover");
  gtk_widget_set_size_request(square, coverSide, coverSide);
  gtk_widget_set_valign(square, GTK_ALIGN_CENTER);
  gtk_widget_set_overflow(square, GTK_OVERFLOW_HIDDEN);
  gtk_overlay_add_overlay(GTK_OVERLAY(square), picture);
  return square;
}

std::string spokenName(const Album& album) {
  return album.name + ", " + trNumber("%1项", album.items->size());
}

}  // namespace

AlbumMenu::AlbumMenu(ThumbnailLoader& thumbnails, Handlers handlers)
    : thumbnails_(thumbnails), handlers_(std::move(handlers)) {
  build();
}

AlbumMenu::~AlbumMenu() {
  if (adding_ != 0) gtk_widget_remove_tick_callback(list_, adding_);
}

void AlbumMenu::build() {
  list_ = styled(gtk_list_box_new(), "orivex-albums");
  gtk_list_box_set_selection_mode(GTK_LIST_BOX(list_), GTK_SELECTION_NONE);
  setAccessibleLabel(list_, tr("相册"));
  connections_.add(list_, "row-activated", [this](GtkListBoxRow* row) {
    const auto folder = albums_.at(static_cast<std::size_t>(gtk_list_box_row_get_index(row))).folder;
    close();
    handlers_.chosen(folder);
  });
  GtkWidget* const scrolled = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scrolled), TRUE);
  gtk_scrolled_window_set_max_content_height(GTK_SCROLLED_WINDOW(scrolled), greatestHeight);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), list_);
  GtkWidget* const elsewhere = styled(gtk_button_new_with_label(tr("浏览…")), "browse");
  connections_.add(elsewhere, "clicked", [this] {
    close();
    handlers_.browse();
  });
  revealer_ = gtk_revealer_new();
  gtk_revealer_set_transition_type(GTK_REVEALER(revealer_), GTK_REVEALER_TRANSITION_TYPE_SLIDE_DOWN);
  gtk_revealer_set_child(GTK_REVEALER(revealer_),
                         styled(boxNew(GTK_ORIENTATION_VERTICAL, 0, {scrolled, elsewhere}), "orivex-albums-menu"));
  gtk_widget_set_valign(revealer_, GTK_ALIGN_START);

  mask_ = GRef<GtkWidget>::sink(styled(boxNew(GTK_ORIENTATION_VERTICAL, 0, {revealer_}), "orivex-albums-mask"));
  gtk_widget_set_can_target(mask_.get(), FALSE);
  auto* const click = gtk_gesture_click_new();
  connections_.add(click, "pressed", [this](int /*count*/, double x, double y) {
    GtkWidget* const hit = gtk_widget_pick(mask_.get(), x, y, GTK_PICK_DEFAULT);
    if (!hit || hit == mask_.get()) close();
  });
  gtk_widget_add_controller(mask_.get(), GTK_EVENT_CONTROLLER(click));
}

bool AlbumMenu::isOpen() const {
  return gtk_revealer_get_reveal_child(GTK_REVEALER(revealer_)) != FALSE;
}

void AlbumMenu::open(const MediaCatalog& catalog, const std::string& folder) {
  albums_ = catalog.albums();
  folder_ = folder;
  while (GtkWidget* const row = gtk_widget_get_first_child(list_)) gtk_list_box_remove(GTK_LIST_BOX(list_), row);
  rowCount_ = 0;
  addRows();
  gtk_widget_set_can_target(mask_.get(), TRUE);
  gtk_widget_add_css_class(mask_.get(), "open");
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_), TRUE);
  focusAloud(gtk_widget_get_first_child(list_), spokenName(albums_.front()));
}

void AlbumMenu::update(const MediaCatalog& catalog) {
  if (!isOpen()) return;
  for (const auto& album : catalog.albums()) {
    const auto isSame = [&](const Album& known) { return known.folder == album.folder; };
    if (std::none_of(albums_.begin(), albums_.end(), isSame)) albums_.push_back(album);
  }
  addRows();
}

// Hundreds of rows would take too long for one frame.
void AlbumMenu::addRows() {
  if (adding_ != 0 || !addSomeRows()) return;
  const auto tick = [](GtkWidget*, GdkFrameClock*, gpointer data) noexcept -> gboolean {
    auto* const menu = static_cast<AlbumMenu*>(data);
    if (contained([&] { return menu->addSomeRows(); })) return G_SOURCE_CONTINUE;
    menu->adding_ = 0;
    return G_SOURCE_REMOVE;
  };
  adding_ = gtk_widget_add_tick_callback(list_, tick, this, nullptr);
}

// Returns whether there are more to add.
bool AlbumMenu::addSomeRows() {
  const auto end = std::min(albums_.size(), rowCount_ + rowsPerFrame);
  for (; rowCount_ < end; ++rowCount_) gtk_list_box_append(GTK_LIST_BOX(list_), rowNew(albums_[rowCount_]));
  return rowCount_ < albums_.size();
}

GtkWidget* AlbumMenu::rowNew(const Album& album) {
  const bool isChosen = album.folder == folder_;
  const auto count = std::to_string(album.items->size());
  GtkWidget* const cover = decorative(gtk_picture_new());
  gtk_picture_set_content_fit(GTK_PICTURE(cover), GTK_CONTENT_FIT_COVER);
  GtkWidget* const texts =
      boxNew(GTK_ORIENTATION_VERTICAL, 2, {labelNew(album.name, "name"), labelNew(count, "count")});
  gtk_widget_set_valign(texts, GTK_ALIGN_CENTER);
  gtk_widget_set_hexpand(texts, TRUE);
  GtkWidget* const check = decorative(gtk_image_new_from_icon_name("object-select-symbolic"));
  gtk_widget_set_opacity(check, isChosen ? 1 : 0);
  GtkWidget* const row = gtk_list_box_row_new();
  gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row),
                             boxNew(GTK_ORIENTATION_HORIZONTAL, 14, {squareAround(cover), texts, check}));
  setAccessibleLabel(row, spokenName(album));
  gtk_accessible_update_state(GTK_ACCESSIBLE(row), GTK_ACCESSIBLE_STATE_SELECTED, isChosen, -1);
  if (album.items->empty()) return row;
  const auto show = [cover](const LoadedThumbnail& thumbnail) {
    gtk_picture_set_paintable(GTK_PICTURE(cover), GDK_PAINTABLE(thumbnail.texture.get()));
  };
  if (const auto* const known = thumbnails_.find(album.items->front())) {
    show(*known);
  } else {
    covers_.push_back(thumbnails_.request(album.items->front(), show));
  }
  return row;
}

void AlbumMenu::close() {
  if (!isOpen()) return;
  covers_.clear();
  gtk_widget_set_can_target(mask_.get(), FALSE);
  gtk_widget_remove_css_class(mask_.get(), "open");
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_), FALSE);
  handlers_.closed();
}

}  // namespace orivex::gtk

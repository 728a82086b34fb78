#include "PhotoSheet.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include "FolderScan.h"
#include "MediaTexts.h"
#include "PhotoStyle.h"

namespace orivex::gtk {
namespace {

ThumbnailSize thumbnailSize() {
  // A cell is some 130 points wide.
  GdkMonitor* const monitor =
      GDK_MONITOR(g_list_model_get_item(gdk_display_get_monitors(gdk_display_get_default()), 0));
  const auto owned = GRef<GdkMonitor>::adopt(monitor);
  return monitor && gdk_monitor_get_scale_factor(monitor) > 1 ? ThumbnailSize::xLarge : ThumbnailSize::large;
}

GtkWidget* button(const char* text, const char* style) {
  GtkWidget* const fresh = gtk_button_new_with_label(text);
  gtk_widget_add_css_class(fresh, style);
  return fresh;
}

// Asks for more height than any screen has and gets by with little: the parent decides.
void measureTall(GtkWidget* widget, GtkOrientation orientation, int forSize, int* minimum, int* natural,
                 int* minimumBaseline, int* naturalBaseline) {
  constexpr int tallest = 10000;
  gtk_widget_measure(gtk_widget_get_first_child(widget), orientation, forSize, minimum, natural, nullptr, nullptr);
  if (orientation == GTK_ORIENTATION_VERTICAL) *natural = std::max(*minimum, tallest);
  *minimumBaseline = *naturalBaseline = -1;
}

void allocateWhole(GtkWidget* widget, int width, int height, int baseline) {
  gtk_widget_allocate(gtk_widget_get_first_child(widget), width, height, baseline, nullptr);
}

GtkWidget* tall(GtkWidget* child) {
  GtkWidget* const fresh = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(fresh), child);
  gtk_widget_set_layout_manager(fresh, gtk_custom_layout_new(nullptr, measureTall, allocateWhole));
  return fresh;
}

}  // namespace

PhotoSheet::PhotoSheet(PipelineThreads threads, const MediaReader& reader, PhotoSources sources,
                       const PhotoLibraryOptions& options, Handlers handlers)
    : roots_(sources.roots),
      filter_{options.allowSelectImage, options.allowSelectVideo},
      handlers_(std::move(handlers)),
      selection_(options),
      thumbnails_(threads.main, reader, std::move(sources.thumbnails), thumbnailSize()),
      toast_(threads.main),
      grid_(thumbnails_, selection_,
            {[this](const MediaItemPtr& item) { toggle(item); }, [this](std::size_t position) { open(position); },
             [this](GtkDirectionType direction) { leaveGrid(direction); }}),
      menu_(thumbnails_, {[this](const std::string& folder) { chooseAlbum(folder); }, [this] { browse(); },
                          [this] { gtk_widget_remove_css_class(albumButton_, "open"); }}),
      preview_(threads, reader, thumbnails_, selection_,
               {[this](const MediaItemPtr& item) { toggle(item); },
                [this](const MediaItemPtr& last) { previewClosed(last); }, [this] { toast_.show("无法播放此视频"); }}),
      catalog_(std::make_shared<MediaCatalog>(MediaItems{}, roots_, false)),
      library_(threads.main, sources.roots, filter_,
               [this](std::shared_ptr<const MediaCatalog> catalog) { learn(std::move(catalog)); }) {
  build();
}

void PhotoSheet::build() {
  installPhotoStyle();
  pages_ = gtk_stack_new();
  gtk_stack_set_vhomogeneous(GTK_STACK(pages_), FALSE);
  gtk_stack_set_hhomogeneous(GTK_STACK(pages_), FALSE);
  gtk_stack_add_named(GTK_STACK(pages_), gtk_box_new(GTK_ORIENTATION_VERTICAL, 0), "waiting");
  gtk_stack_add_named(GTK_STACK(pages_), grid_.widget(), "grid");
  gtk_stack_add_named(GTK_STACK(pages_), emptyPage(), "empty");
  GtkWidget* const below = gtk_overlay_new();
  gtk_overlay_set_child(GTK_OVERLAY(below), pages_);
  gtk_overlay_add_overlay(GTK_OVERLAY(below), menu_.widget());
  gtk_widget_set_vexpand(below, TRUE);

  browser_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(browser_), header());
  gtk_box_append(GTK_BOX(browser_), below);
  GtkWidget* const layers = gtk_overlay_new();
  gtk_overlay_set_child(GTK_OVERLAY(layers), browser_);
  gtk_overlay_add_overlay(GTK_OVERLAY(layers), preview_.widget());
  gtk_overlay_add_overlay(GTK_OVERLAY(layers), toast_.widget());

  GtkWidget* const all = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_add_css_class(all, "orivex-photo-sheet");
  gtk_box_append(GTK_BOX(all), layers);
  gtk_box_append(GTK_BOX(all), footer());
  auto* const keys = gtk_event_controller_key_new();
  connections_.push_back(SignalConnection::connect<&PhotoSheet::keyPressed>(keys, "key-pressed", this));
  gtk_widget_add_controller(all, keys);
  content_ = GRef<GtkWidget>::sink(tall(all));
  connections_.push_back(SignalConnection::connect<&PhotoSheet::mapped>(content_.get(), "map", this));
  selectionChanged();
}

GtkWidget* PhotoSheet::header() {
  GtkWidget* const cancel = button("取消", "plain");
  connections_.push_back(SignalConnection::connect<&PhotoSheet::cancelClicked>(cancel, "clicked", this));
  albumName_ = gtk_label_new(catalog_->albums().front().name.c_str());
  gtk_label_set_ellipsize(GTK_LABEL(albumName_), PANGO_ELLIPSIZE_MIDDLE);
  GtkWidget* const arrow = gtk_image_new_from_icon_name("pan-down-symbolic");
  gtk_widget_add_css_class(arrow, "arrow");
  gtk_widget_set_valign(arrow, GTK_ALIGN_CENTER);
  GtkWidget* const inside = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
  gtk_box_append(GTK_BOX(inside), albumName_);
  gtk_box_append(GTK_BOX(inside), arrow);
  albumButton_ = gtk_button_new();
  gtk_button_set_child(GTK_BUTTON(albumButton_), inside);
  gtk_widget_add_css_class(albumButton_, "album");
  gtk_widget_set_valign(albumButton_, GTK_ALIGN_CENTER);
  connections_.push_back(SignalConnection::connect<&PhotoSheet::albumsClicked>(albumButton_, "clicked", this));
  GtkWidget* const bar = gtk_center_box_new();
  gtk_widget_add_css_class(bar, "bar");
  gtk_center_box_set_start_widget(GTK_CENTER_BOX(bar), cancel);
  gtk_center_box_set_center_widget(GTK_CENTER_BOX(bar), albumButton_);
  return bar;
}

GtkWidget* PhotoSheet::footer() {
  originalText_ = gtk_label_new(nullptr);
  gtk_label_set_ellipsize(GTK_LABEL(originalText_), PANGO_ELLIPSIZE_END);
  original_ = gtk_check_button_new();
  gtk_check_button_set_child(GTK_CHECK_BUTTON(original_), originalText_);
  gtk_widget_add_css_class(original_, "original");
  gtk_widget_set_name(original_, "photos-original");
  confirm_ = button("", "confirm");
  gtk_widget_set_name(confirm_, "photos-confirm");
  gtk_widget_set_hexpand(confirm_, TRUE);
  gtk_widget_set_halign(confirm_, GTK_ALIGN_END);
  gtk_widget_set_valign(confirm_, GTK_ALIGN_CENTER);
  connections_.push_back(SignalConnection::connect<&PhotoSheet::confirmClicked>(confirm_, "clicked", this));
  GtkWidget* const bar = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
  gtk_widget_add_css_class(bar, "foot");
  gtk_box_append(GTK_BOX(bar), original_);
  gtk_box_append(GTK_BOX(bar), confirm_);
  return bar;
}

GtkWidget* PhotoSheet::emptyPage() {
  std::string places;
  for (const auto& root : roots_) places += "\n" + root.path;
  const char* const what = filter_.images && filter_.videos ? "没有照片或视频"
                           : filter_.images                 ? "没有照片"
                                                            : "没有视频";
  GtkWidget* const icon = gtk_image_new_from_icon_name("image-x-generic-symbolic");
  gtk_image_set_pixel_size(GTK_IMAGE(icon), 72);
  GtkWidget* const title = gtk_label_new(what);
  gtk_widget_add_css_class(title, "title");
  GtkWidget* const hint = gtk_label_new(("在这些文件夹里没有找到:" + places).c_str());
  gtk_label_set_justify(GTK_LABEL(hint), GTK_JUSTIFY_CENTER);
  gtk_label_set_wrap(GTK_LABEL(hint), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(hint), PANGO_WRAP_WORD_CHAR);
  gtk_widget_add_css_class(hint, "hint");
  GtkWidget* const page = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
  gtk_widget_add_css_class(page, "orivex-photos-empty");
  gtk_widget_set_valign(page, GTK_ALIGN_CENTER);
  GtkWidget* const elsewhere = button("浏览…", "browse");
  connections_.push_back(SignalConnection::connect<&PhotoSheet::browseClicked>(elsewhere, "clicked", this));
  for (GtkWidget* const part : {icon, title, hint, elsewhere}) gtk_box_append(GTK_BOX(page), part);
  // A phone that is held sideways has no room for it.
  GtkWidget* const scrolled = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), page);
  return scrolled;
}

void PhotoSheet::learn(std::shared_ptr<const MediaCatalog> catalog) {
  const bool isFirst = catalog_->albums().front().items->empty();
  catalog_ = std::move(catalog);
  if (selection_.refresh([this](const std::string& path) { return find(path); })) selectionChanged();
  showAlbum(false);
  menu_.learn(*catalog_);
  preview_.refresh(grid_.items());
  if (isFirst && !grid_.items()->empty() && !menu_.isOpen()) grid_.focus(0);
}

void PhotoSheet::chooseAlbum(const std::string& folder) {
  folder_ = folder;
  showAlbum(true);
  if (!grid_.items()->empty()) {
    grid_.focus(0);
  } else {
    gtk_widget_grab_focus(albumButton_);
  }
}

void PhotoSheet::browse() {
  auto* const window = gtk_widget_get_root(content_.get());
  if (!GTK_IS_WINDOW(window)) return;
  chooser_ =
      chooseMedia(GTK_WINDOW(window), filter_, [this](const std::vector<std::string>& paths) { browsed(paths); });
}

// What was chosen elsewhere is an album of its own, in which all of it is selected already as far as the rules allow.
void PhotoSheet::browsed(const std::vector<std::string>& paths) {
  chooser_.reset();
  auto items = *browsed_.items;
  std::optional<std::string> refusal;
  for (const auto& path : paths) {
    const auto found = FolderScan::itemAt(path, filter_);
    if (!found) {
      refusal = "无法打开:" + std::string(nameOf(MediaItem{path}));
      continue;
    }
    const auto isSame = [&](const MediaItemPtr& known) { return known->path == path; };
    std::erase_if(items, isSame);
    items.push_back(std::make_shared<MediaItem>(*found));
    if (const auto reason = selection_.refusal(*found)) {
      refusal = reason;
    } else if (selection_.numberOf(*found) == 0) {
      selection_.toggle(items.back());
    }
  }
  if (items.empty()) return;
  browsed_.items = std::make_shared<MediaItems>(std::move(items));
  chooseAlbum(browsed_.folder);
  selectionChanged();
  if (refusal) toast_.show(*refusal);
}

MediaItemPtr PhotoSheet::find(const std::string& path) const {
  const auto& items = *browsed_.items;
  const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) { return item->path == path; });
  return found != items.end() ? *found : catalog_->find(path);
}

// An album that has gone gives way to that of everything.
const Album& PhotoSheet::album() {
  if (folder_ == browsed_.folder) return browsed_;
  const auto& albums = catalog_->albums();
  const auto found =
      std::find_if(albums.begin(), albums.end(), [&](const auto& album) { return album.folder == folder_; });
  if (found != albums.end()) return *found;
  folder_.clear();
  return albums.front();
}

void PhotoSheet::showAlbum(bool fromTop) {
  const auto& shown = album();
  gtk_label_set_text(GTK_LABEL(albumName_), shown.name.c_str());
  grid_.show(shown.items, fromTop);
  const char* const page = !shown.items->empty() ? "grid" : catalog_->isComplete() ? "empty" : "waiting";
  gtk_stack_set_visible_child_name(GTK_STACK(pages_), page);
}

void PhotoSheet::toggle(const MediaItemPtr& item) {
  const auto* const known = thumbnails_.find(item);
  if (const auto refusal = selection_.refusal(*item)) return toast_.show(*refusal);
  // Of a video without a picture the sound or a later frame may still be good.
  const bool isUnreadable = known && known->isBroken() && item->type == MediaType::image;
  if (isUnreadable && selection_.numberOf(*item) == 0) return toast_.show("这张照片无法打开");
  selection_.toggle(item);
  selectionChanged();
}

void PhotoSheet::open(std::size_t position) {
  const auto& item = grid_.items()->at(position);
  if (selection_.isKindExcluded(*item)) return toast_.show(selection_.refusal(*item).value_or(""));
  // The preview covers it.
  gtk_widget_set_can_focus(browser_, FALSE);
  preview_.open(grid_.items(), position);
}

void PhotoSheet::previewClosed(const MediaItemPtr& last) {
  gtk_widget_set_can_focus(browser_, TRUE);
  const auto& items = *grid_.items();
  const auto place = std::find(items.begin(), items.end(), last);
  if (place != items.end()) grid_.focus(static_cast<std::size_t>(place - items.begin()));
}

void PhotoSheet::selectionChanged() {
  const auto count = selection_.items().size();
  gtk_label_set_text(GTK_LABEL(originalText_), originalText(count, selection_.bytes()).c_str());
  gtk_button_set_label(GTK_BUTTON(confirm_), confirmText(count).c_str());
  gtk_widget_set_sensitive(confirm_, count > 0);
  grid_.selectionChanged();
  preview_.selectionChanged();
}

void PhotoSheet::leaveGrid(GtkDirectionType direction) {
  gtk_widget_grab_focus(direction == GTK_DIR_TAB_BACKWARD ? albumButton_ : original_);
}

void PhotoSheet::browseClicked(GtkButton* /*button*/) {
  browse();
}

// In a sandbox there may be nothing else to look at.
void PhotoSheet::mapped(GtkWidget* /*content*/) {
  const bool isFirst = !std::exchange(wasMapped_, true);
  const auto isReadable = [](const MediaRoot& root) { return access(root.path.c_str(), R_OK | X_OK) == 0; };
  if (isFirst && std::none_of(roots_.begin(), roots_.end(), isReadable)) browse();
}

void PhotoSheet::cancelClicked(GtkButton* /*button*/) {
  handlers_.cancelled();
}

void PhotoSheet::albumsClicked(GtkButton* /*button*/) {
  if (menu_.isOpen()) return menu_.close();
  gtk_widget_add_css_class(albumButton_, "open");
  menu_.open(*catalog_, folder_);
}

void PhotoSheet::confirmClicked(GtkButton* /*button*/) {
  const bool isOriginal = gtk_check_button_get_active(GTK_CHECK_BUTTON(original_)) != FALSE;
  if (!selection_.items().empty()) handlers_.confirmed(selection_.result(isOriginal));
}

// Escape leaves the innermost place first; the sheet around takes it when nothing is open in here.
gboolean PhotoSheet::keyPressed(GtkEventControllerKey* /*keys*/, guint key, guint /*code*/,
                                GdkModifierType /*modifiers*/) {
  if (key != GDK_KEY_Escape || (!preview_.isOpen() && !menu_.isOpen())) return FALSE;
  if (preview_.isOpen()) {
    preview_.close();
  } else {
    menu_.close();
    gtk_widget_grab_focus(albumButton_);
  }
  return TRUE;
}

}  // namespace orivex::gtk

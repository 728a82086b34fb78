#include "PhotoSheet.h"

#include <algorithm>
#include <utility>

#include "../ui/Announcement.h"
#include "../ui/Widgets.h"
#include "PhotoStyle.h"
#include "library/FolderScan.h"
#include "library/MediaTexts.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr double toastSeconds = 3;

ThumbnailSize thumbnailSize() {
  // A cell is some 130 points wide.
  const auto monitor = GRef<GdkMonitor>::adopt(
      GDK_MONITOR(g_list_model_get_item(gdk_display_get_monitors(gdk_display_get_default()), 0)));
  return monitor && gdk_monitor_get_scale_factor(monitor.get()) > 1 ? ThumbnailSize::xLarge : ThumbnailSize::large;
}

GtkWidget* button(const char* text, const char* style) {
  return styled(gtk_button_new_with_label(text), style);
}

// Takes no input; screen readers speak it.
GtkWidget* toastNew() {
  auto* const toast =
      GTK_WIDGET(g_object_new(GTK_TYPE_LABEL, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT, "wrap", TRUE, "justify",
                              GTK_JUSTIFY_CENTER, "halign", GTK_ALIGN_CENTER, "valign", GTK_ALIGN_CENTER, nullptr));
  gtk_widget_set_can_target(toast, FALSE);
  return styled(toast, "orivex-toast");
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
  GtkWidget* const fresh = boxNew(GTK_ORIENTATION_VERTICAL, 0, {child});
  gtk_widget_set_layout_manager(fresh, gtk_custom_layout_new(nullptr, measureTall, allocateWhole));
  return fresh;
}

}  // namespace

PhotoSheet::PhotoSheet(PipelineThreads threads, const MediaReader& reader, PhotoSources sources,
                       const PhotoLibraryOptions& options, Handlers handlers)
    : queue_(threads.main),
      roots_(sources.roots),
      filter_{options.allowSelectImage, options.allowSelectVideo},
      handlers_(std::move(handlers)),
      selection_(options),
      thumbnails_(threads.main, reader, std::move(sources.thumbnails), thumbnailSize()),
      grid_(thumbnails_, selection_,
            {[this](const MediaItemPtr& item) { toggle(item); }, [this](std::size_t position) { open(position); },
             [this](const MediaItemPtr& item) { dropBroken(item); },
             [this](GtkDirectionType direction) { leaveGrid(direction); }}),
      menu_(thumbnails_, {[this](const std::string& folder) { chooseAlbum(folder); }, [this] { browse(); },
                          [this] { gtk_widget_remove_css_class(albumButton_, "open"); }}),
      preview_(
          threads, reader, thumbnails_, selection_,
          {[this](const MediaItemPtr& item) { toggle(item); },
           [this](const MediaItemPtr& last) { previewClosed(last); }, [this] { showToast(tr("无法播放此视频")); }}),
      catalog_(std::make_shared<MediaCatalog>(MediaItems{}, roots_, false)),
      empty_(roots_, filter_, [this] { browse(); }),
      library_(threads.main, sources.roots, filter_,
               [this](std::shared_ptr<const MediaCatalog> catalog) { update(std::move(catalog)); }) {
  build();
}

void PhotoSheet::build() {
  installStyle(photoStyle);
  pages_ = gtk_stack_new();
  gtk_stack_set_vhomogeneous(GTK_STACK(pages_), FALSE);
  gtk_stack_set_hhomogeneous(GTK_STACK(pages_), FALSE);
  gtk_stack_add_titled(GTK_STACK(pages_), waitingPage(), "waiting", tr("相册"));
  gtk_stack_add_titled(GTK_STACK(pages_), grid_.widget(), "grid", tr("相册"));
  gtk_stack_add_titled(GTK_STACK(pages_), empty_.widget(), "empty", tr("相册"));
  GtkWidget* const below = gtk_overlay_new();
  gtk_overlay_set_child(GTK_OVERLAY(below), pages_);
  gtk_overlay_add_overlay(GTK_OVERLAY(below), menu_.widget());
  gtk_widget_set_vexpand(below, TRUE);
  browser_ = boxNew(GTK_ORIENTATION_VERTICAL, 0, {header(), below});
  toast_ = toastNew();
  GtkWidget* const layers = gtk_overlay_new();
  gtk_overlay_set_child(GTK_OVERLAY(layers), browser_);
  gtk_overlay_add_overlay(GTK_OVERLAY(layers), preview_.widget());
  gtk_overlay_add_overlay(GTK_OVERLAY(layers), toast_);

  GtkWidget* const all = styled(boxNew(GTK_ORIENTATION_VERTICAL, 0, {layers, footer()}), "orivex-photo-sheet");
  auto* const keys = gtk_event_controller_key_new();
  connections_.add(keys, "key-pressed", [this](guint key) { return key == GDK_KEY_Escape && goBack(); });
  gtk_widget_add_controller(all, keys);
  content_ = GRef<GtkWidget>::sink(tall(all));
  connections_.add(content_.get(), "map", [this] { mapped(); });
  selectionChanged();
}

GtkWidget* PhotoSheet::header() {
  GtkWidget* const cancel = button(tr("取消"), "plain");
  connections_.add(cancel, "clicked", [this] { handlers_.cancelled(); });
  albumName_ = gtk_label_new(catalog_->albums().front().name.c_str());
  gtk_label_set_ellipsize(GTK_LABEL(albumName_), PANGO_ELLIPSIZE_MIDDLE);
  GtkWidget* const arrow = styled(decorative(gtk_image_new_from_icon_name("pan-down-symbolic")), "arrow");
  gtk_widget_set_valign(arrow, GTK_ALIGN_CENTER);
  albumButton_ = styled(gtk_button_new(), "album");
  gtk_button_set_child(GTK_BUTTON(albumButton_), boxNew(GTK_ORIENTATION_HORIZONTAL, 6, {albumName_, arrow}));
  setAccessibleLabel(albumButton_, albumName_);
  gtk_widget_set_valign(albumButton_, GTK_ALIGN_CENTER);
  connections_.add(albumButton_, "clicked", [this] {
    if (menu_.isOpen()) return menu_.close();
    gtk_widget_add_css_class(albumButton_, "open");
    menu_.open(*catalog_, folder_);
  });
  GtkWidget* const bar = styled(gtk_center_box_new(), "bar");
  gtk_center_box_set_start_widget(GTK_CENTER_BOX(bar), cancel);
  gtk_center_box_set_center_widget(GTK_CENTER_BOX(bar), albumButton_);
  return bar;
}

GtkWidget* PhotoSheet::footer() {
  originalText_ = gtk_label_new(nullptr);
  gtk_label_set_ellipsize(GTK_LABEL(originalText_), PANGO_ELLIPSIZE_END);
  original_ = styled(checkButtonNew(nullptr), "original");
  gtk_check_button_set_child(GTK_CHECK_BUTTON(original_), originalText_);
  setAccessibleLabel(original_, originalText_);
  gtk_widget_set_name(original_, "photos-original");
  confirm_ = button("", "confirm");
  gtk_widget_set_name(confirm_, "photos-confirm");
  gtk_widget_set_hexpand(confirm_, TRUE);
  gtk_widget_set_halign(confirm_, GTK_ALIGN_END);
  gtk_widget_set_valign(confirm_, GTK_ALIGN_CENTER);
  connections_.add(confirm_, "clicked", [this] {
    const bool isOriginal = gtk_check_button_get_active(GTK_CHECK_BUTTON(original_)) != FALSE;
    if (!selection_.items().empty()) handlers_.confirmed(selection_.result(isOriginal));
  });
  return styled(boxNew(GTK_ORIENTATION_HORIZONTAL, 12, {original_, confirm_}), "foot");
}

// Has the keyboard until there are photos, and keeps what is pressed for them from the buttons.
GtkWidget* PhotoSheet::waitingPage() {
  waiting_ = styled(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0), "waiting");
  gtk_widget_set_focusable(waiting_, TRUE);
  setAccessibleLabel(waiting_, tr("相册"));
  auto* const keys = gtk_event_controller_key_new();
  connections_.add(keys, "key-pressed", [](guint key) {
    return key != GDK_KEY_Escape && key != GDK_KEY_Tab && key != GDK_KEY_ISO_Left_Tab;
  });
  gtk_widget_add_controller(waiting_, keys);
  return waiting_;
}

void PhotoSheet::update(std::shared_ptr<const MediaCatalog> catalog) {
  auto* const root = gtk_widget_get_root(pages_);
  GtkWidget* const focus = root ? gtk_root_get_focus(root) : nullptr;
  const bool waits = grid_.items()->empty() && focus && isInside(focus, pages_);
  catalog_ = std::move(catalog);
  if (selection_.refresh([this](const std::string& path) { return find(path); })) selectionChanged();
  showAlbum(false);
  menu_.update(*catalog_);
  preview_.refresh(grid_.items());
  if (!waits) return;
  if (!grid_.items()->empty()) {
    grid_.focus(0);
  } else if (!gtk_widget_get_mapped(focus)) {
    gtk_root_set_focus(root, nullptr);  // the sheet finds another: no key reaches the page that has waited
  }
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

// With the desktop's own chooser; in a sandbox its portal reaches every folder of the visitor.
void PhotoSheet::browse() {
  auto* const window = gtk_widget_get_root(content_.get());
  if (!GTK_IS_WINDOW(window)) return;
  auto filter = GRef<GtkFileFilter>::sink(gtk_file_filter_new());
  if (filter_.images) gtk_file_filter_add_mime_type(filter.get(), "image/*");
  if (filter_.videos) gtk_file_filter_add_mime_type(filter.get(), "video/*");
  gtk_file_filter_set_name(filter.get(), kindsOf(filter_, tr("照片和视频"), tr("照片"), tr("视频")));
  chooser_ = std::make_unique<FileDialog>(
      GTK_WINDOW(window), FileDialog::Options{.title = tr("浏览"), .filters = {std::move(filter)}, .multiple = true},
      [this](const FileDialog::Files& files) { browsed(FileDialog::pathsOf(files)); });
}

// What was chosen elsewhere is an album of its own, in which all of it is selected already as far as the rules allow.
void PhotoSheet::browsed(const std::vector<std::string>& paths) {
  chooser_.reset();
  auto items = *browsed_.items;
  std::optional<std::string> refusal;
  for (const auto& path : paths) {
    const auto found = FolderScan::itemAt(path, filter_);
    if (!found) {
      refusal = tr("无法打开:%1", {std::string(nameOf(path))});
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
  if (refusal) showToast(*refusal);
}

MediaItemPtr PhotoSheet::find(const std::string& path) const {
  const auto browsed = itemWithPath(*browsed_.items, path);
  return browsed ? browsed : catalog_->find(path);
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
  if (shown.items->empty()) empty_.update();
  gtk_stack_set_visible_child_name(GTK_STACK(pages_), page);
}

void PhotoSheet::toggle(const MediaItemPtr& item) {
  const auto* const known = thumbnails_.find(item);
  if (const auto refusal = selection_.refusal(*item)) return showToast(*refusal);
  if (known && known->isBroken()) return showToast(brokenText(*item));
  selection_.toggle(item);
  selectionChanged();
  announce(confirm_, trNumber("已选择%1项", selection_.items().size()));
}

// It was selected before its thumbnail was there.
void PhotoSheet::dropBroken(const MediaItemPtr& item) {
  if (selection_.numberOf(*item) == 0) return;
  selection_.toggle(item);
  selectionChanged();
  showToast(brokenText(*item));
}

void PhotoSheet::open(std::size_t position) {
  const auto& item = grid_.items()->at(position);
  if (selection_.isKindExcluded(*item)) return showToast(selection_.refusal(*item).value_or(""));
  // The preview covers it.
  gtk_widget_set_can_focus(browser_, FALSE);
  preview_.open(grid_.items(), position);
}

void PhotoSheet::previewClosed(const MediaItemPtr& last) {
  gtk_widget_set_can_focus(browser_, TRUE);
  if (const auto position = grid_.positionOf(last)) grid_.focus(*position);
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

void PhotoSheet::mapped() {
  if (std::exchange(wasMapped_, true)) return;
  if (!grid_.items()->empty()) {
    grid_.focus(0);
  } else if (gtk_widget_get_mapped(waiting_)) {
    gtk_widget_grab_focus(waiting_);
  }
  // In a sandbox there may be nothing else to look at.
  if (std::none_of(roots_.begin(), roots_.end(), isReadable)) browse();
}

// Leaves the innermost place; false when nothing is open in here: then the sheet around goes.
bool PhotoSheet::goBack() {
  if (preview_.isOpen()) {
    preview_.close();
    return true;
  }
  if (!menu_.isOpen()) return false;
  menu_.close();
  gtk_widget_grab_focus(albumButton_);
  return true;
}

// A later word replaces an earlier one.
void PhotoSheet::showToast(const std::string& text) {
  gtk_label_set_text(GTK_LABEL(toast_), text.c_str());
  announce(toast_, text);
  gtk_widget_add_css_class(toast_, "shown");
  toastEnd_ = queue_.repeat(toastSeconds, [this] {
    gtk_widget_remove_css_class(toast_, "shown");
    toastEnd_.reset();
  });
}

}  // namespace orivex::gtk

#include "PhotoPreview.h"

#include <algorithm>
#include <utility>

#include "../../ui/Announcement.h"
#include "../../ui/Widgets.h"
#include "../library/MediaTexts.h"

#include "orivex/platform/base/Translation.h"

namespace orivex::gtk {
namespace {

constexpr int playIconSize = 32;  // points

}  // namespace

PhotoPreview::PhotoPreview(PipelineThreads threads, const MediaReader& reader, ThumbnailLoader& thumbnails,
                           const MediaSelection& selection, Handlers handlers)
    : threads_(threads),
      selection_(selection),
      handlers_(std::move(handlers)),
      strip_(threads.main, reader, thumbnails,
             {[this](std::size_t position) { moveTo(position); }, [this] { playOrStop(); }}),
      thumbnails_(thumbnails) {
  build();
}

void PhotoPreview::build() {
  GtkWidget* const over = gtk_overlay_new();
  gtk_overlay_set_child(GTK_OVERLAY(over), strip_.widget());
  length_ = styled(gtk_label_new(nullptr), "length");
  gtk_widget_set_halign(length_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(length_, GTK_ALIGN_END);
  gtk_widget_set_can_target(length_, FALSE);
  gtk_overlay_add_overlay(GTK_OVERLAY(over), length_);
  gtk_overlay_add_overlay(GTK_OVERLAY(over), playButton());
  gtk_widget_set_focusable(styled(strip_.widget(), "picture"), TRUE);
  setAccessibleLabel(strip_.widget(), tr("照片"));

  GtkWidget* const box = styled(boxNew(GTK_ORIENTATION_VERTICAL, 0, {bar(), over}), "orivex-preview");
  auto* const keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  connections_.add(keys, "key-pressed",
                   [this](guint key, guint /*code*/, GdkModifierType modifiers) { return keyPressed(key, modifiers); });
  gtk_widget_add_controller(box, keys);

  revealer_ = GRef<GtkWidget>::sink(gtk_revealer_new());
  gtk_revealer_set_transition_type(GTK_REVEALER(revealer_.get()), GTK_REVEALER_TRANSITION_TYPE_CROSSFADE);
  gtk_revealer_set_transition_duration(GTK_REVEALER(revealer_.get()), 180);
  gtk_revealer_set_child(GTK_REVEALER(revealer_.get()), box);
  reveal(false);
}

void PhotoPreview::reveal(bool isOpen) {
  gtk_widget_set_can_target(revealer_.get(), isOpen);
  gtk_widget_set_can_focus(revealer_.get(), isOpen);
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer_.get()), isOpen);
}

GtkWidget* PhotoPreview::bar() {
  GtkWidget* const back = styled(gtk_button_new_from_icon_name("go-previous-symbolic"), "plain");
  setAccessibleLabel(back, tr("返回"));
  connections_.add(back, "clicked", [this] { close(); });
  title_ = styled(gtk_label_new(nullptr), "title");
  gtk_widget_set_direction(title_, GTK_TEXT_DIR_LTR);  // "1 / 9" has no letter that would say so
  disc_ = styled(gtk_label_new(nullptr), "disc");
  gtk_widget_set_valign(disc_, GTK_ALIGN_CENTER);
  mark_ = styled(gtk_button_new(), "mark");
  gtk_button_set_child(GTK_BUTTON(mark_), disc_);
  setAccessibleLabel(mark_, tr("选择"));
  connections_.add(mark_, "clicked", [this] { toggle(); });
  GtkWidget* const fresh = styled(gtk_center_box_new(), "bar");
  gtk_center_box_set_start_widget(GTK_CENTER_BOX(fresh), back);
  gtk_center_box_set_center_widget(GTK_CENTER_BOX(fresh), title_);
  gtk_center_box_set_end_widget(GTK_CENTER_BOX(fresh), mark_);
  return fresh;
}

GtkWidget* PhotoPreview::playButton() {
  play_ = styled(gtk_button_new_from_icon_name("media-playback-start-symbolic"), "play");
  gtk_image_set_pixel_size(GTK_IMAGE(gtk_button_get_child(GTK_BUTTON(play_))), playIconSize);
  gtk_widget_set_halign(play_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(play_, GTK_ALIGN_CENTER);
  gtk_widget_set_visible(play_, FALSE);
  setAccessibleLabel(play_, tr("播放"));
  connections_.add(play_, "clicked", [this] { playOrStop(); });
  return play_;
}

void PhotoPreview::open(std::shared_ptr<const MediaItems> items, std::size_t position) {
  items_ = std::move(items);
  strip_.show(items_, position);
  reveal(true);
  moveTo(position);
  focusAloud(strip_.widget(), spoken_);
}

void PhotoPreview::close() {
  if (!isOpen()) return;
  reveal(false);
  stop();
  strip_.clear();
  items_ = nullptr;
  handlers_.closed(std::exchange(shown_, nullptr));
}

void PhotoPreview::refresh(const std::shared_ptr<const MediaItems>& items) {
  strip_.finishSlide();
  if (!isOpen()) return;
  const auto same =
      std::find_if(items->begin(), items->end(), [&](const auto& now) { return now->path == shown_->path; });
  if (items->empty()) return close();
  items_ = items;
  const auto position =
      same != items->end() ? static_cast<std::size_t>(same - items->begin()) : std::min(position_, items->size() - 1);
  strip_.show(items_, position);
  moveTo(position);
}

void PhotoPreview::moveTo(std::size_t position) {
  const auto before = std::exchange(shown_, items_->at(position));
  if (!before || before->path != shown_->path) stop();
  position_ = position;
  const auto title = std::to_string(position + 1) + " / " + std::to_string(items_->size());
  gtk_label_set_text(GTK_LABEL(title_), title.c_str());
  selectionChanged();
  // The focus has not moved.
  if (before && before->path != shown_->path) announce(strip_.widget(), spoken_);
}

void PhotoPreview::selectionChanged() {
  if (!isOpen()) return;
  const auto number = selection_.numberOf(*shown_);
  gtk_label_set_text(GTK_LABEL(disc_), number == 0 ? "" : std::to_string(number).c_str());
  (number == 0 ? gtk_widget_remove_css_class : gtk_widget_add_css_class)(disc_, "chosen");
  const auto* const known = thumbnails_.find(shown_);
  const auto duration = known ? known->duration : std::nullopt;
  const auto place = tr("第%1项, 共%2项", {std::to_string(position_ + 1), std::to_string(items_->size())});
  setAccessibleLabel(title_, place);
  spoken_ = place + ", " + accessibleText(*shown_, duration, number, known && known->isBroken());
  setAccessibleLabel(strip_.widget(), spoken_);
  setAccessibleLabel(mark_, number == 0 ? tr("选择") : tr("取消选择"));
  const bool isVideo = shown_->type == MediaType::video;
  gtk_widget_set_visible(play_, isVideo && !player_);
  gtk_widget_set_visible(length_, isVideo);
  if (isVideo)
    gtk_label_set_text(GTK_LABEL(length_), duration ? tr("视频 %1", {durationText(*duration)}).c_str() : tr("视频"));
}

void PhotoPreview::playOrStop() {
  if (!isOpen() || shown_->type != MediaType::video) return;
  if (player_) return stop();
  // What the decoder has not opened within its limits is not opened here without any.
  const auto* const known = thumbnails_.find(shown_);
  if (known && known->isBroken()) return handlers_.unplayable();
  if (known && known->duration) return play();
  reading_ = thumbnails_.request(shown_, [this](const LoadedThumbnail& video) {
    if (!video.isBroken() && !video.duration) return;  // another program's picture
    reading_ = {};
    playOrStop();
  });
}

void PhotoPreview::play() {
  const int scale = gtk_widget_get_scale_factor(strip_.widget());
  const Size area{static_cast<double>(gtk_widget_get_width(strip_.widget()) * scale),
                  static_cast<double>(gtk_widget_get_height(strip_.widget()) * scale)};
  player_ = std::make_unique<ClipPlayer>(
      threads_, shown_->path, area,
      ClipPlayer::Handlers{.show = [this](GRef<GdkTexture> frame) { strip_.showFrame(std::move(frame)); },
                           .ended = [this] { stop(); },
                           .failed =
                               [this] {
                                 stop();
                                 handlers_.unplayable();
                               }});
  gtk_widget_set_visible(play_, FALSE);
  gtk_widget_grab_focus(strip_.widget());
}

void PhotoPreview::stop() {
  reading_ = {};
  if (!std::exchange(player_, nullptr)) return;
  strip_.showFrame(nullptr);
  if (shown_) gtk_widget_set_visible(play_, shown_->type == MediaType::video);
}

void PhotoPreview::toggle() {
  if (isOpen()) handlers_.toggle(MediaItemPtr(shown_));
}

bool PhotoPreview::keyPressed(guint key, GdkModifierType modifiers) {
  if (!isOpen() || (modifiers & (GDK_ALT_MASK | GDK_SUPER_MASK))) return false;
  switch (key) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add:
      strip_.zoomStep(1);
      return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
      strip_.zoomStep(-1);
      return true;
    case GDK_KEY_0:
    case GDK_KEY_KP_0:
      strip_.zoomStep(0);
      return true;
    default:
      return !(modifiers & GDK_CONTROL_MASK) && plainKeyPressed(key);
  }
}

bool PhotoPreview::plainKeyPressed(guint key) {
  // The buttons have keys of their own.
  const bool isOnPicture = gtk_widget_has_focus(strip_.widget()) != FALSE;
  switch (key) {
    case GDK_KEY_Left:
      if (!strip_.pan(-1, 0)) strip_.step(-1);
      return true;
    case GDK_KEY_Right:
      if (!strip_.pan(1, 0)) strip_.step(1);
      return true;
    case GDK_KEY_Up:
      return strip_.pan(0, -1);
    case GDK_KEY_Down:
      return strip_.pan(0, 1);
    case GDK_KEY_space:
      if (isOnPicture) toggle();
      return isOnPicture;
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
      if (isOnPicture) playOrStop();
      return isOnPicture;
    case GDK_KEY_BackSpace:
      close();
      return true;
    default:
      return false;
  }
}

}  // namespace orivex::gtk

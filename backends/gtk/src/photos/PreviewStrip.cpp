#include "PreviewStrip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <variant>

#include "Drawing.h"
#include "ThumbnailMaker.h"

namespace orivex::gtk {
namespace {

constexpr double gap = 16;             // points between two pictures
constexpr double brokenIconSide = 64;  // points
constexpr guint slideMilliseconds = 220;

// A drag is a swipe when it goes so far, or goes on so shortly over a small distance.
constexpr double farPart = 0.3;  // of the width
constexpr double shortDistance = 24;
constexpr gint64 shortMicroseconds = 300'000;

// Points that a finger may move while it taps.
constexpr double tapSlack = 8;

GRef<GdkTexture> largePicture(const MediaItem& item, int width, int height, const MediaProbe& probe) {
  GRef<GdkPixbuf> picture;
  if (item.type == MediaType::image) {
    picture = decodePicture(item.path, width, height);
  } else if (const auto facts = probe.probeVideo(item.path); const auto* video = std::get_if<VideoFacts>(&facts)) {
    picture = decodePictureData(video->firstFrameJpeg, width, height);
  }
  return picture ? GRef<GdkTexture>::adopt(gdk_texture_new_for_pixbuf(picture.get())) : nullptr;
}

}  // namespace

PreviewStrip::PreviewStrip(MainQueue& queue, const MediaProbe& probe, ThumbnailLoader& thumbnails, Handlers handlers)
    : queue_(queue),
      probe_(probe),
      thumbnails_(thumbnails),
      handlers_(std::move(handlers)),
      canvas_(GRef<GtkWidget>::sink(canvasNew(*this))) {
  gtk_widget_set_overflow(canvas_.get(), GTK_OVERFLOW_HIDDEN);
  gtk_widget_set_vexpand(canvas_.get(), TRUE);
  gtk_widget_set_hexpand(canvas_.get(), TRUE);
  auto* const drag = gtk_gesture_drag_new();
  connections_.push_back(SignalConnection::connect<&PreviewStrip::dragBegun>(drag, "drag-begin", this));
  connections_.push_back(SignalConnection::connect<&PreviewStrip::dragged>(drag, "drag-update", this));
  connections_.push_back(SignalConnection::connect<&PreviewStrip::dragEnded>(drag, "drag-end", this));
  gtk_widget_add_controller(canvas_.get(), GTK_EVENT_CONTROLLER(drag));
}

PreviewStrip::~PreviewStrip() {
  slideDone_.disconnect();
  if (slide_) adw_animation_reset(slide_.get());
  canvasForget(canvas_.get());
}

void PreviewStrip::show(std::shared_ptr<const MediaItems> items, std::size_t position) {
  items_ = std::move(items);
  position_ = position;
  offset_ = 0;
  forgetFarPictures();
  loadNext();
  gtk_widget_queue_draw(canvas_.get());
}

void PreviewStrip::showFrame(GRef<GdkTexture> frame) {
  frame_ = std::move(frame);
  gtk_widget_queue_draw(canvas_.get());
}

void PreviewStrip::clear() {
  items_ = nullptr;
  frame_ = nullptr;
  pictures_.clear();
}

MediaItemPtr PreviewStrip::itemAt(std::ptrdiff_t position) const {
  const bool exists = items_ && position >= 0 && position < static_cast<std::ptrdiff_t>(items_->size());
  return exists ? (*items_)[static_cast<std::size_t>(position)] : nullptr;
}

int PreviewStrip::minimumSize(GtkOrientation /*orientation*/) {
  return 0;
}

void PreviewStrip::allocate(int /*width*/, int /*height*/) {
  loadNext();
}

void PreviewStrip::snapshot(GtkSnapshot* snapshot) {
  const double width = gtk_widget_get_width(canvas_.get());
  for (const int beside : {-1, 0, 1}) {
    const double left = offset_ + beside * (width + gap);
    const auto position = static_cast<std::ptrdiff_t>(position_) + beside;
    if (itemAt(position) && left < width && left > -width) drawItem(snapshot, static_cast<std::size_t>(position), left);
  }
}

void PreviewStrip::drawItem(GtkSnapshot* snapshot, std::size_t position, double left) {
  const auto& item = (*items_)[position];
  const drawing::Area area{static_cast<float>(left), 0, static_cast<float>(gtk_widget_get_width(canvas_.get())),
                           static_cast<float>(gtk_widget_get_height(canvas_.get()))};
  if (frame_ && position == position_) return drawing::contain(snapshot, frame_.get(), area);
  const auto large = pictures_.find(item);
  if (large != pictures_.end() && large->second.isBroken) {
    drawing::icon(snapshot, canvas_.get(), "image-missing-symbolic",
                  {area.x + area.width / 2, area.y + area.height / 2}, static_cast<float>(brokenIconSide),
                  drawing::faint);
  } else if (large != pictures_.end()) {
    drawing::contain(snapshot, large->second.texture.get(), area);
  } else if (const auto* const small = thumbnails_.find(item); small && !small->isBroken()) {
    drawing::contain(snapshot, small->texture.get(), area);
  }
}

// What is looked at first, then what the next swipe brings.
void PreviewStrip::loadNext() {
  if (isLoading_ || !items_ || gtk_widget_get_width(canvas_.get()) == 0) return;
  for (const int beside : {0, 1, -1}) {
    const auto item = itemAt(static_cast<std::ptrdiff_t>(position_) + beside);
    if (item && !pictures_.contains(item)) return load(item);
  }
}

void PreviewStrip::load(const MediaItemPtr& item) {
  isLoading_ = true;
  const int scale = gtk_widget_get_scale_factor(canvas_.get());
  const int width = gtk_widget_get_width(canvas_.get()) * scale;
  const int height = gtk_widget_get_height(canvas_.get()) * scale;
  auto loaded = alive_.guard([this, item](const GRef<GdkTexture>& texture) {
    isLoading_ = false;
    if (!items_) return;
    pictures_[item] = {texture, !texture};
    forgetFarPictures();
    gtk_widget_queue_draw(canvas_.get());
    loadNext();
  });
  queue_.global([&queue = queue_, &probe = probe_, item, width, height, loaded = std::move(loaded)]() mutable {
    auto texture = largePicture(*item, width, height, probe);
    queue.async([loaded = std::move(loaded), texture = std::move(texture)]() mutable { loaded(texture); });
  });
}

void PreviewStrip::forgetFarPictures() {
  std::array<MediaItemPtr, 3> near;
  for (std::ptrdiff_t beside = -1; beside <= 1; ++beside) {
    near[static_cast<std::size_t>(beside + 1)] = itemAt(static_cast<std::ptrdiff_t>(position_) + beside);
  }
  std::erase_if(pictures_,
                [&](const auto& picture) { return std::find(near.begin(), near.end(), picture.first) == near.end(); });
}

void PreviewStrip::dragBegun(GtkGestureDrag* /*drag*/, double /*x*/, double /*y*/) {
  dragStart_ = g_get_monotonic_time();
  if (slide_) adw_animation_skip(slide_.get());
}

void PreviewStrip::dragged(GtkGestureDrag* /*drag*/, double x, double /*y*/) {
  constexpr double resistance = 3;
  const auto next = static_cast<std::ptrdiff_t>(position_) + (x < 0 ? 1 : -1);
  offset_ = itemAt(next) ? x : x / resistance;
  gtk_widget_queue_draw(canvas_.get());
}

void PreviewStrip::dragEnded(GtkGestureDrag* /*drag*/, double x, double y) {
  if (std::hypot(x, y) < tapSlack) handlers_.tapped();
  const bool isQuick = g_get_monotonic_time() - dragStart_ < shortMicroseconds && std::abs(x) > shortDistance;
  const bool isFar = std::abs(x) > farPart * gtk_widget_get_width(canvas_.get());
  if (isQuick || isFar) return step(x < 0 ? 1 : -1);
  slideTo(0);
}

void PreviewStrip::step(int direction) {
  // A step on top of one that still slides begins where that one leads.
  if (slide_ && adw_animation_get_state(slide_.get()) == ADW_ANIMATION_PLAYING) adw_animation_skip(slide_.get());
  const bool exists = itemAt(static_cast<std::ptrdiff_t>(position_) + direction) != nullptr;
  slideTo(exists ? -direction * (gtk_widget_get_width(canvas_.get()) + gap) : 0);
}

void PreviewStrip::slideTo(double offset) {
  const auto move = [](double value, gpointer strip) noexcept {
    static_cast<PreviewStrip*>(strip)->offset_ = value;
    gtk_widget_queue_draw(static_cast<PreviewStrip*>(strip)->canvas_.get());
  };
  slideDone_.disconnect();
  slide_ = GRef<AdwAnimation>::sink(adw_timed_animation_new(canvas_.get(), offset_, offset, slideMilliseconds,
                                                            adw_callback_animation_target_new(move, this, nullptr)));
  adw_timed_animation_set_easing(ADW_TIMED_ANIMATION(slide_.get()), ADW_EASE_OUT_CUBIC);
  slideDone_ = SignalConnection::connect<&PreviewStrip::slideEnded>(slide_.get(), "done", this);
  adw_animation_play(slide_.get());
}

void PreviewStrip::slideEnded(AdwAnimation* /*animation*/) {
  const int direction = offset_ < -1 ? 1 : offset_ > 1 ? -1 : 0;
  offset_ = 0;
  if (direction == 0 || !items_) return;
  position_ = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(position_) + direction);
  forgetFarPictures();
  loadNext();
  gtk_widget_queue_draw(canvas_.get());
  handlers_.moved(position_);
}

}  // namespace orivex::gtk

#include "PreviewStrip.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "../grid/Drawing.h"

namespace orivex::gtk {
namespace {

constexpr double gap = 16;            // points between two pictures
constexpr float brokenIconSide = 64;  // points
constexpr guint slideMilliseconds = 220;

// A drag is a swipe when it goes so far, or goes on so shortly over a small distance.
constexpr double farPart = 0.3;  // of the width
constexpr double shortDistance = 24;
constexpr gint64 shortMicroseconds = 300'000;

// Points that a finger may move while it taps, and between two taps that count as a double one.
constexpr double tapSlack = 8;
constexpr double doubleTapSlack = 24;
constexpr gint64 doubleTapMicroseconds = 400'000;

constexpr double zoomStepFactor = 1.5;
constexpr double panSteps = 4;  // from one edge of the area to the other
constexpr double doubleTapZoom = 2.5;
constexpr int closeDetail = 2;

graphene_rect_t zoomed(const graphene_rect_t& area, const PictureZoom& zoom) {
  const auto scale = static_cast<float>(zoom.scale());
  const auto [width, height] = area.size;
  return {{area.origin.x + width * (1 - scale) / 2 + static_cast<float>(zoom.offset().x),
           area.origin.y + height * (1 - scale) / 2 + static_cast<float>(zoom.offset().y)},
          {width * scale, height * scale}};
}

// Under the ring of the focus, which is bright.
void drawDarkFrame(GtkSnapshot* snapshot, Size size) {
  GskRoundedRect frame;
  const graphene_rect_t area{{0, 0}, {static_cast<float>(size.width), static_cast<float>(size.height)}};
  gsk_rounded_rect_init_from_rect(&frame, &area, 0);
  constexpr std::array<float, 4> widths{4, 4, 4, 4};
  constexpr std::array<GdkRGBA, 4> colors{{{0, 0, 0, 1}, {0, 0, 0, 1}, {0, 0, 0, 1}, {0, 0, 0, 1}}};
  gtk_snapshot_append_border(snapshot, &frame, widths.data(), colors.data());
}

}  // namespace

PreviewStrip::PreviewStrip(MainQueue& queue, const MediaReader& reader, ThumbnailLoader& thumbnails, Handlers handlers)
    : thumbnails_(thumbnails),
      handlers_(std::move(handlers)),
      canvas_(GRef<GtkWidget>::sink(canvasNew(*this))),
      pictures_(queue, reader, [this] { gtk_widget_queue_draw(canvas_.get()); }) {
  g_object_set(canvas_.get(), "accessible-role", GTK_ACCESSIBLE_ROLE_IMG, nullptr);
  gtk_widget_set_overflow(canvas_.get(), GTK_OVERFLOW_HIDDEN);
  gtk_widget_set_vexpand(canvas_.get(), TRUE);
  gtk_widget_set_hexpand(canvas_.get(), TRUE);
  connections_.add(drag_, "drag-begin", [this] {
    zoomedFrom_ = zoom_.offset();
    dragStart_ = g_get_monotonic_time();
    finishSlide();
  });
  connections_.add(drag_, "drag-update", [this](double x, double y) { dragged(x, y); });
  connections_.add(drag_, "drag-end", [this](double x, double y) { dragEnded(x, y); });
  gtk_widget_add_controller(canvas_.get(), GTK_EVENT_CONTROLLER(drag_));
  auto* const pinch = gtk_gesture_zoom_new();
  connections_.add(pinch, "begin", [this] { pinchBegun(); });
  connections_.add(pinch, "scale-changed", [this, pinch](double scale) {
    Point center;
    gtk_gesture_get_bounding_box_center(pinch, &center.x, &center.y);
    zoomTo(pinchedFrom_ * scale, fromMiddle(center.x, center.y));
  });
  connections_.add(pinch, "end", [this] { isPinching_ = false; });
  gtk_widget_add_controller(canvas_.get(), GTK_EVENT_CONTROLLER(pinch));
}

PreviewStrip::~PreviewStrip() {
  abandonSlide();
  canvasForget(canvas_.get());
}

void PreviewStrip::show(std::shared_ptr<const MediaItems> items, std::size_t position) {
  abandonSlide();
  const auto before = current();
  items_ = std::move(items);
  position_ = position;
  if (current() != before) zoom_ = {};
  requestPictures();
  gtk_widget_queue_draw(canvas_.get());
}

void PreviewStrip::showFrame(GRef<GdkTexture> frame) {
  frame_ = std::move(frame);
  gtk_widget_queue_draw(canvas_.get());
}

void PreviewStrip::clear() {
  abandonSlide();
  items_ = nullptr;
  frame_ = nullptr;
  pictures_.request({}, {});
}

MediaItemPtr PreviewStrip::itemAt(std::ptrdiff_t position) const {
  const bool exists = items_ && position >= 0 && position < static_cast<std::ptrdiff_t>(items_->size());
  return exists ? (*items_)[static_cast<std::size_t>(position)] : nullptr;
}

int PreviewStrip::minimumSize(GtkOrientation /*orientation*/, int /*forSize*/) {
  return 0;
}

void PreviewStrip::allocate(int width, int height) {
  const Size size{static_cast<double>(width), static_cast<double>(height)};
  if (std::exchange(size_, size) != size) zoom_ = {};
  requestPictures();
}

void PreviewStrip::snapshot(GtkSnapshot* snapshot) {
  const double width = size_.width;
  for (const int beside : {-1, 0, 1}) {
    const double left = offset_ + beside * (width + gap);
    const auto position = static_cast<std::ptrdiff_t>(position_) + beside;
    if (itemAt(position) && left < width && left > -width) drawItem(snapshot, static_cast<std::size_t>(position), left);
  }
  if (gtk_widget_has_visible_focus(canvas_.get())) drawDarkFrame(snapshot, size_);
}

void PreviewStrip::drawItem(GtkSnapshot* snapshot, std::size_t position, double left) {
  const auto& item = (*items_)[position];
  graphene_rect_t area{{static_cast<float>(left), 0},
                       {static_cast<float>(size_.width), static_cast<float>(size_.height)}};
  if (position == position_ && zoom_.isIn()) area = zoomed(area, zoom_);
  if (frame_ && position == position_) return drawing::contain(snapshot, frame_.get(), area);
  if (auto* const texture = textureOf(item)) {
    drawing::contain(snapshot, texture, area);
  } else if (pictures_.find(item)) {
    drawing::icon(snapshot, canvas_.get(), "image-missing-symbolic",
                  {area.origin.x + area.size.width / 2, area.origin.y + area.size.height / 2}, brokenIconSide,
                  drawing::faint);
  }
}

// Null for one that is broken, or not known yet.
GdkTexture* PreviewStrip::textureOf(const MediaItemPtr& item) const {
  if (const auto* const large = pictures_.find(item)) return large->texture.get();
  const auto* const small = thumbnails_.find(item);
  return small ? small->texture.get() : nullptr;
}

// What is looked at first, then what the next swipe brings.
void PreviewStrip::requestPictures() {
  if (!items_ || size_.width == 0) return;
  const double scale = gtk_widget_get_scale_factor(canvas_.get());
  std::vector<LargePictures::Request> requests;
  if (zoom_.isIn()) requests.push_back({current(), closeDetail});
  for (const int beside : {0, 1, -1}) {
    if (auto item = itemAt(static_cast<std::ptrdiff_t>(position_) + beside)) requests.push_back({std::move(item)});
  }
  pictures_.request(std::move(requests), {size_.width * scale, size_.height * scale});
}

void PreviewStrip::zoomTo(double scale, Point focus) {
  const auto item = current();
  auto* const texture = item && item->type == MediaType::image ? textureOf(item) : nullptr;
  if (!texture) return;
  if (!zoom_.isIn()) zoom_ = {drawing::containedSize(texture, size_), size_};
  zoom_.scaleTo(scale, focus);
  requestPictures();
  gtk_widget_queue_draw(canvas_.get());
}

void PreviewStrip::zoomStep(int direction) {
  zoomTo(direction == 0 ? 1 : zoom_.scale() * std::pow(zoomStepFactor, direction), {});
}

bool PreviewStrip::pan(int across, int down) {
  const auto before = zoom_.offset();
  zoom_.moveTo({before.x - across * size_.width / panSteps, before.y - down * size_.height / panSteps});
  gtk_widget_queue_draw(canvas_.get());
  return zoom_.offset() != before;
}

Point PreviewStrip::fromMiddle(double x, double y) const {
  return {x - size_.width / 2, y - size_.height / 2};
}

void PreviewStrip::pinchBegun() {
  // The first of the two fingers has begun a drag.
  isPinching_ = true;
  gtk_gesture_set_state(drag_, GTK_EVENT_SEQUENCE_DENIED);
  if (offset_ != 0) slideTo(0);
  pinchedFrom_ = zoom_.scale();
}

void PreviewStrip::tapped(Point place) {
  const auto now = g_get_monotonic_time();
  const bool isSecond = now - lastTap_ < doubleTapMicroseconds &&
                        std::hypot(place.x - lastTapPlace_.x, place.y - lastTapPlace_.y) < doubleTapSlack;
  lastTap_ = isSecond ? 0 : now;
  lastTapPlace_ = place;
  if (isSecond) {
    zoomTo(zoom_.isIn() ? 1 : doubleTapZoom, place);
  } else {
    handlers_.tapped();
  }
}

void PreviewStrip::dragged(double x, double y) {
  constexpr double resistance = 3;
  gtk_widget_queue_draw(canvas_.get());
  if (zoom_.isIn()) return zoom_.moveTo({zoomedFrom_.x + x, zoomedFrom_.y + y});
  const auto next = static_cast<std::ptrdiff_t>(position_) + (x < 0 ? 1 : -1);
  offset_ = itemAt(next) ? x : x / resistance;
}

void PreviewStrip::dragEnded(double x, double y) {
  if (isPinching_) return;
  if (std::hypot(x, y) < tapSlack) {
    Point start;
    gtk_gesture_drag_get_start_point(GTK_GESTURE_DRAG(drag_), &start.x, &start.y);
    tapped(fromMiddle(start.x, start.y));
  }
  if (zoom_.isIn()) return;
  const bool isQuick = g_get_monotonic_time() - dragStart_ < shortMicroseconds && std::abs(x) > shortDistance;
  const bool isFar = std::abs(x) > farPart * size_.width;
  if (isQuick || isFar) return step(x < 0 ? 1 : -1);
  slideTo(0);
}

void PreviewStrip::step(int direction) {
  // A step on top of one that still slides begins where that one leads.
  finishSlide();
  zoom_ = {};
  const bool exists = itemAt(static_cast<std::ptrdiff_t>(position_) + direction) != nullptr;
  slideTo(exists ? -direction * (size_.width + gap) : 0);
}

void PreviewStrip::finishSlide() {
  if (slide_ && adw_animation_get_state(slide_.get()) == ADW_ANIMATION_PLAYING) adw_animation_skip(slide_.get());
}

// Where it leads is a place among items that are no longer shown.
void PreviewStrip::abandonSlide() {
  slideDone_.disconnect();
  if (slide_) adw_animation_reset(slide_.get());
  slide_ = nullptr;
  offset_ = 0;
}

void PreviewStrip::slideTo(double offset) {
  const auto move = [](double value, gpointer strip) noexcept {
    static_cast<PreviewStrip*>(strip)->offset_ = value;
    gtk_widget_queue_draw(static_cast<PreviewStrip*>(strip)->canvas_.get());
  };
  const double from = offset_;
  abandonSlide();
  slide_ = GRef<AdwAnimation>::sink(adw_timed_animation_new(canvas_.get(), from, offset, slideMilliseconds,
                                                            adw_callback_animation_target_new(move, this, nullptr)));
  adw_timed_animation_set_easing(ADW_TIMED_ANIMATION(slide_.get()), ADW_EASE_OUT_CUBIC);
  slideDone_ = SignalConnection::connect(slide_.get(), "done", [this] { slideEnded(); });
  adw_animation_play(slide_.get());
}

void PreviewStrip::slideEnded() {
  const int direction = offset_ < -1 ? 1 : offset_ > 1 ? -1 : 0;
  offset_ = 0;
  if (direction == 0 || !items_) return;
  position_ = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(position_) + direction);
  requestPictures();
  gtk_widget_queue_draw(canvas_.get());
  handlers_.moved(position_);
}

}  // namespace orivex::gtk

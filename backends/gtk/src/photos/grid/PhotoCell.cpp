#include "PhotoCell.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "../../ui/Widgets.h"
#include "../library/MediaTexts.h"
#include "Drawing.h"

namespace orivex::gtk {
namespace {

// Points.
constexpr float circleSide = 24;
constexpr float circleInset = 6;
constexpr float lengthInset = 7;
constexpr float playIconSide = 12;
constexpr float shadeHeight = 34;
constexpr float brokenIconSide = 32;
constexpr float hotSide = 46;

constexpr GdkRGBA placeholder{0.17F, 0.17F, 0.18F, 1};
constexpr GdkRGBA selectedVeil{0, 0, 0, 0.35F};
constexpr GdkRGBA excludedVeil{0.11F, 0.11F, 0.12F, 0.72F};
constexpr GdkRGBA accent{0.204F, 0.471F, 0.965F, 1};  // #3478f6, as in the style sheet

GRef<PangoLayout> layoutOf(GtkWidget* widget, const std::string& text) {
  return GRef<PangoLayout>::adopt(gtk_widget_create_pango_layout(widget, text.c_str()));
}

// A shade that grows darker downwards, under bright text at the lower edge.
void shade(GtkSnapshot* snapshot, const graphene_rect_t& area) {
  const graphene_point_t bottom{area.origin.x, area.origin.y + area.size.height};
  constexpr std::array<GskColorStop, 2> stops{{{0, {0, 0, 0, 0}}, {1, {0, 0, 0, 0.6F}}}};
  gtk_snapshot_append_linear_gradient(snapshot, &area, &area.origin, &bottom, stops.data(), stops.size());
}

// A ring over any picture; a filled disc when chosen.
void circle(GtkSnapshot* snapshot, const graphene_rect_t& area, bool isChosen) {
  constexpr GdkRGBA dim{0, 0, 0, 0.28F};
  GskRoundedRect disc;
  gsk_rounded_rect_init_from_rect(&disc, &area, area.size.width / 2);
  gtk_snapshot_push_rounded_clip(snapshot, &disc);
  gtk_snapshot_append_color(snapshot, isChosen ? &accent : &dim, &area);
  gtk_snapshot_pop(snapshot);
  constexpr float line = 1.5F;
  constexpr std::array<float, 4> widths{line, line, line, line};
  constexpr std::array<GdkRGBA, 4> colors{drawing::bright, drawing::bright, drawing::bright, drawing::bright};
  gtk_snapshot_append_border(snapshot, &disc, widths.data(), colors.data());
}

graphene_size_t sizeOf(PangoLayout* text) {
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(text, &width, &height);
  return {static_cast<float>(width), static_cast<float>(height)};
}

void write(GtkSnapshot* snapshot, PangoLayout* text, graphene_point_t corner) {
  gtk_snapshot_save(snapshot);
  gtk_snapshot_translate(snapshot, &corner);
  gtk_snapshot_append_layout(snapshot, text, &drawing::bright);
  gtk_snapshot_restore(snapshot);
}

}  // namespace

GtkWidget* PhotoCell::make() {
  auto cell = std::make_unique<PhotoCell>();
  auto& made = *cell;
  return made.widget_ = decorative(canvasNew(std::move(cell)));  // the row has the name
}

void PhotoCell::bind(MediaItemPtr item) {
  request_ = Subscription();
  item_ = std::move(item);
  thumbnail_.reset();
  lengthText_ = nullptr;
  number_ = 0;
  isExcluded_ = false;
  updateAccessibility();
  gtk_widget_queue_draw(widget_);
}

void PhotoCell::setThumbnail(const LoadedThumbnail& thumbnail) {
  const bool hasNewLength = thumbnail.duration && (!thumbnail_ || thumbnail_->duration != thumbnail.duration);
  thumbnail_ = thumbnail;
  if (hasNewLength) lengthText_ = nullptr;
  if (hasNewLength || thumbnail.isBroken()) updateAccessibility();
  gtk_widget_queue_draw(widget_);
}

void PhotoCell::setMarks(std::size_t number, bool isExcluded) {
  if (number == number_ && isExcluded == isExcluded_) return;
  isExcluded_ = isExcluded;
  if (std::exchange(number_, number) != number) {
    numberText_ = nullptr;
    updateAccessibility();
  }
  gtk_widget_queue_draw(widget_);
}

bool PhotoCell::isOnCircle(graphene_point_t point) const {
  return point.x >= static_cast<float>(gtk_widget_get_width(widget_)) - hotSide && point.y <= hotSide;
}

// The focus is on the grid's own widget around the cell, so that is what a screen reader reads.
void PhotoCell::updateAccessibility() const {
  GtkWidget* const row = gtk_widget_get_parent(widget_);
  if (!row || !item_) return;
  setAccessibleLabel(row, accessibleText(*item_, thumbnail_ ? thumbnail_->duration : std::nullopt, number_,
                                         thumbnail_ && thumbnail_->isBroken()));
  gtk_accessible_update_state(GTK_ACCESSIBLE(row), GTK_ACCESSIBLE_STATE_SELECTED, number_ != 0, -1);
}

// A square.
int PhotoCell::minimumSize(GtkOrientation orientation, int forSize) {
  return orientation == GTK_ORIENTATION_VERTICAL ? std::max(1, forSize) : 1;
}

void PhotoCell::snapshot(GtkSnapshot* snapshot) {
  if (!item_) return;
  const auto side = static_cast<float>(gtk_widget_get_width(widget_));
  const graphene_rect_t area{{0, 0}, {side, side}};
  drawPicture(snapshot, area);
  if (item_->type == MediaType::video) drawLength(snapshot, side);
  if (number_ != 0) gtk_snapshot_append_color(snapshot, &selectedVeil, &area);
  if (isExcluded_) return gtk_snapshot_append_color(snapshot, &excludedVeil, &area);
  if (!thumbnail_ || !thumbnail_->isBroken()) drawCircle(snapshot, side);
}

void PhotoCell::drawPicture(GtkSnapshot* snapshot, const graphene_rect_t& area) const {
  gtk_snapshot_append_color(snapshot, &placeholder, &area);
  if (!thumbnail_) return;
  if (thumbnail_->isBroken()) {
    drawing::icon(snapshot, widget_, "image-missing-symbolic", {area.size.width / 2, area.size.height / 2},
                  brokenIconSide, drawing::faint);
  } else {
    drawing::cover(snapshot, thumbnail_->texture.get(), area);
  }
}

void PhotoCell::drawLength(GtkSnapshot* snapshot, float side) {
  shade(snapshot, {{0, side - shadeHeight}, {side, shadeHeight}});
  if (!lengthText_) {
    const auto duration = thumbnail_ ? thumbnail_->duration : std::nullopt;
    lengthText_ = layoutOf(widget_, duration ? durationText(*duration) : "–:––");
  }
  const auto size = sizeOf(lengthText_.get());
  const float middle = side - lengthInset - size.height / 2;
  drawing::icon(snapshot, widget_, "media-playback-start-symbolic", {lengthInset + playIconSide / 2, middle},
                playIconSide, drawing::bright);
  write(snapshot, lengthText_.get(), {side - lengthInset - size.width, side - lengthInset - size.height});
}

void PhotoCell::drawCircle(GtkSnapshot* snapshot, float side) {
  if (number_ != 0 && !numberText_) numberText_ = layoutOf(widget_, std::to_string(number_));
  const auto size = number_ != 0 ? sizeOf(numberText_.get()) : graphene_size_t{0, 0};
  const float diameter = std::max({circleSide, size.width, size.height});  // large texts need more
  const graphene_rect_t disc{{side - circleInset - diameter, circleInset}, {diameter, diameter}};
  circle(snapshot, disc, number_ != 0);
  if (number_ == 0) return;
  write(snapshot, numberText_.get(),
        {disc.origin.x + (diameter - size.width) / 2, disc.origin.y + (diameter - size.height) / 2});
}

}  // namespace orivex::gtk

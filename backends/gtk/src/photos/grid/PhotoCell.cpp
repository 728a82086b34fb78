#include "PhotoCell.h"

#include <algorithm>
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

GRef<PangoLayout> layoutOf(GtkWidget* widget, const std::string& text) {
  return GRef<PangoLayout>::adopt(gtk_widget_create_pango_layout(widget, text.c_str()));
}

}  // namespace

GtkWidget* PhotoCell::make() {
  auto cell = std::make_unique<PhotoCell>();
  auto& made = *cell;
  return made.widget_ = canvasNew(std::move(cell));
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
  if (hasNewLength) {
    lengthText_ = nullptr;
    updateAccessibility();
  }
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
  setAccessibleLabel(row, accessibleText(*item_, thumbnail_ ? thumbnail_->duration : std::nullopt, number_));
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
  if (number_ != 0) gtk_snapshot_append_color(snapshot, &drawing::selectedVeil, &area);
  if (isExcluded_) return gtk_snapshot_append_color(snapshot, &drawing::excludedVeil, &area);
  drawCircle(snapshot, side);
}

void PhotoCell::drawPicture(GtkSnapshot* snapshot, const graphene_rect_t& area) const {
  gtk_snapshot_append_color(snapshot, &drawing::placeholder, &area);
  if (!thumbnail_) return;
  if (thumbnail_->isBroken()) {
    drawing::icon(snapshot, widget_, "image-missing-symbolic", {area.size.width / 2, area.size.height / 2},
                  brokenIconSide, drawing::faint);
  } else {
    drawing::cover(snapshot, thumbnail_->texture.get(), area);
  }
}

void PhotoCell::drawLength(GtkSnapshot* snapshot, float side) {
  drawing::shade(snapshot, {{0, side - shadeHeight}, {side, shadeHeight}});
  if (!lengthText_) {
    const auto duration = thumbnail_ ? thumbnail_->duration : std::nullopt;
    lengthText_ = layoutOf(widget_, duration ? durationText(*duration) : "–:––");
  }
  const auto size = drawing::sizeOf(lengthText_.get());
  const float middle = side - lengthInset - size.height / 2;
  drawing::icon(snapshot, widget_, "media-playback-start-symbolic", {lengthInset + playIconSide / 2, middle},
                playIconSide, drawing::bright);
  drawing::write(snapshot, lengthText_.get(), {side - lengthInset - size.width, side - lengthInset - size.height});
}

void PhotoCell::drawCircle(GtkSnapshot* snapshot, float side) {
  if (number_ != 0 && !numberText_) numberText_ = layoutOf(widget_, std::to_string(number_));
  const auto size = number_ != 0 ? drawing::sizeOf(numberText_.get()) : graphene_size_t{0, 0};
  const float diameter = std::max({circleSide, size.width, size.height});  // large texts need more
  const graphene_rect_t disc{{side - circleInset - diameter, circleInset}, {diameter, diameter}};
  drawing::circle(snapshot, disc, number_ != 0);
  if (number_ == 0) return;
  drawing::write(snapshot, numberText_.get(),
                 {disc.origin.x + (diameter - size.width) / 2, disc.origin.y + (diameter - size.height) / 2});
}

}  // namespace orivex::gtk

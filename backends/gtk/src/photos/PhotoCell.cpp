#include "PhotoCell.h"

#include <algorithm>
#include <string>

#include "Drawing.h"
#include "MediaTexts.h"

namespace orivex::gtk {
namespace {

// Points.
constexpr float circleSide = 24;
constexpr float circleInset = 6;
constexpr float lengthInset = 7;
constexpr float shadeHeight = 34;
constexpr float brokenIconSide = 32;
constexpr double hotSide = 46;

}  // namespace

PhotoCell::~PhotoCell() {
  if (roster_) roster_->erase(this);
}

void PhotoCell::bind(MediaItemPtr item) {
  request_ = Subscription();
  item_ = std::move(item);
  thumbnail_.reset();
  lengthText_ = nullptr;
  number_ = 0;
  isExcluded_ = false;
  if (!item_) return;
  tellAssistiveTechnology();
  gtk_widget_queue_draw(widget_);
}

void PhotoCell::setThumbnail(const LoadedThumbnail& thumbnail) {
  const bool hasNewLength = thumbnail.duration && (!thumbnail_ || thumbnail_->duration != thumbnail.duration);
  thumbnail_ = thumbnail;
  if (hasNewLength) {
    lengthText_ = nullptr;
    tellAssistiveTechnology();
  }
  gtk_widget_queue_draw(widget_);
}

void PhotoCell::setMarks(std::size_t number, bool isExcluded) {
  if (number == number_ && isExcluded == isExcluded_) return;
  const bool hasNewNumber = number != number_;
  number_ = number;
  isExcluded_ = isExcluded;
  if (hasNewNumber) {
    numberText_ = nullptr;
    tellAssistiveTechnology();
  }
  gtk_widget_queue_draw(widget_);
}

bool PhotoCell::isOnCircle(double x, double y) const {
  return x >= gtk_widget_get_width(widget_) - hotSide && y <= hotSide;
}

// The focus is on the grid's own widget around the cell, so that is what a screen reader reads.
void PhotoCell::tellAssistiveTechnology() const {
  GtkWidget* const row = gtk_widget_get_parent(widget_);
  if (!row || !item_) return;
  const auto text = accessibleText(*item_, thumbnail_ ? thumbnail_->duration : std::nullopt, number_);
  gtk_accessible_update_property(GTK_ACCESSIBLE(row), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
  gtk_accessible_update_state(GTK_ACCESSIBLE(row), GTK_ACCESSIBLE_STATE_SELECTED, number_ != 0, -1);
}

void PhotoCell::snapshot(GtkSnapshot* snapshot) {
  if (!item_) return;
  const auto side = static_cast<float>(std::min(gtk_widget_get_width(widget_), gtk_widget_get_height(widget_)));
  drawPicture(snapshot, side);
  if (item_->type == MediaType::video) drawLength(snapshot, side);
  drawing::fill(snapshot, {0, 0, side, side}, number_ != 0 ? drawing::selectedVeil : drawing::none);
  if (isExcluded_) return drawing::fill(snapshot, {0, 0, side, side}, drawing::excludedVeil);
  drawCircle(snapshot, side);
}

void PhotoCell::drawPicture(GtkSnapshot* snapshot, float side) const {
  drawing::fill(snapshot, {0, 0, side, side}, drawing::placeholder);
  if (!thumbnail_) return;
  if (thumbnail_->isBroken()) {
    drawing::icon(snapshot, widget_, "image-missing-symbolic", {side / 2, side / 2}, brokenIconSide, drawing::faint);
  } else {
    drawing::cover(snapshot, thumbnail_->texture.get(), {0, 0, side, side});
  }
}

void PhotoCell::drawLength(GtkSnapshot* snapshot, float side) {
  drawing::shade(snapshot, {0, side - shadeHeight, side, shadeHeight});
  if (!lengthText_) {
    const auto duration = thumbnail_ ? thumbnail_->duration : std::nullopt;
    const auto length = duration ? durationText(*duration) : "–:––";
    lengthText_ = drawing::text(widget_, length, drawing::smallText);
  }
  const auto size = drawing::sizeOf(lengthText_.get());
  const float middle = side - lengthInset - size.height / 2;
  drawing::playMark(snapshot, {lengthInset, middle}, drawing::bright);
  drawing::write(snapshot, lengthText_.get(), {side - lengthInset - size.width, side - lengthInset - size.height},
                 drawing::bright);
}

void PhotoCell::drawCircle(GtkSnapshot* snapshot, float side) {
  if (number_ != 0 && !numberText_) {
    numberText_ = drawing::text(widget_, std::to_string(number_), drawing::numberText);
  }
  const auto size = number_ != 0 ? drawing::sizeOf(numberText_.get()) : drawing::Extent{0, 0};
  const float circle = std::max({circleSide, size.width, size.height});  // large texts need more
  const drawing::Area place{side - circleInset - circle, circleInset, circle, circle};
  drawing::circle(snapshot, place, number_ != 0);
  if (number_ == 0) return;
  drawing::write(snapshot, numberText_.get(),
                 {place.x + (circle - size.width) / 2, place.y + (circle - size.height) / 2}, drawing::bright);
}

}  // namespace orivex::gtk

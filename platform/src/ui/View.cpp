#include "orivex/platform/ui/View.h"

#include <algorithm>

#include "orivex/platform/ui/Window.h"

namespace orivex {

View::~View() {
  if (mirror_) mirror_->viewDestroyed();
  for (const auto& view : subviews_) view->superview_ = nullptr;
}

void View::changed(ViewChange change) const {
  if (mirror_) mirror_->viewChanged(change);
}

void View::setFrame(const Rect& frame) {
  const bool resized = frame.size() != frame_.size();
  set(frame_, frame, ViewChange::placement);
  if (resized && layoutHandler_) layoutHandler_();
}

void View::layOut() {
  const auto kept = weak_from_this().lock();
  if (layoutHandler_) layoutHandler_();
  const auto views = subviews_;  // a screen that is laid out may change what it shows
  for (const auto& view : views) view->layOut();
}

void View::setCenter(Point center) {
  setFrame({center.x - frame_.width / 2, center.y - frame_.height / 2, frame_.width, frame_.height});
}

std::shared_ptr<View> View::viewWithTag(int tag) {
  if (tag_ == tag) return shared_from_this();
  for (const auto& view : subviews_) {
    if (auto found = view->viewWithTag(tag)) return found;
  }
  return nullptr;
}

void View::addSubview(const std::shared_ptr<View>& view) {
  view->removeFromSuperview();
  insertSubview(view, subviews_.size());
}

void View::insertSubview(const std::shared_ptr<View>& view, std::size_t index) {
  view->removeFromSuperview();
  const auto position = static_cast<std::ptrdiff_t>(std::min(index, subviews_.size()));
  subviews_.insert(subviews_.begin() + position, view);
  view->superview_ = this;
  changed(ViewChange::subviews);
}

void View::removeFromSuperview() {
  if (!superview_) return;
  const auto kept = shared_from_this();
  View& parent = *superview_;
  parent.subviews_.erase(std::find(parent.subviews_.begin(), parent.subviews_.end(), kept));
  superview_ = nullptr;
  parent.changed(ViewChange::subviews);
}

void View::removeAllSubviews() {
  while (!subviews_.empty()) subviews_.back()->removeFromSuperview();
}

Window* View::window() const {
  const View* top = this;
  while (top->superview_) top = top->superview_;
  return top->shownIn_;
}

bool View::isShowing() const {
  bool shows = false;
  for (const View* view = this; view; view = view->superview_) {
    if (view->showing_ == false) return false;
    shows |= view->showing_.has_value();
  }
  return shows;
}

void View::setShowing(bool showing) {
  showing_ = showing;
  if (!showing) notifyLeaving();
}

void View::notifyLeaving() const {
  const auto kept = weak_from_this().lock();
  leaving_.notify();
  const auto views = subviews_;  // what closes may take views along
  for (const auto& view : views) view->notifyLeaving();
}

void View::addGesture(const std::shared_ptr<ScreenEdgePanGesture>& gesture) {
  gestures_.push_back(gesture);
  changed(ViewChange::gestures);
}

void View::endEditing() {
  if (const Window* shownIn = window()) shownIn->endEditing(*this);
}

std::shared_ptr<View> View::snapshotView() const {
  const View* mirrored = this;
  while (mirrored && !mirrored->mirror_) mirrored = mirrored->superview_;
  return mirrored ? mirrored->mirror_->snapshot(*this) : nullptr;
}

}  // namespace orivex

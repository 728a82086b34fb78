#include "ViewMirrorTree.h"

#include <algorithm>
#include <utility>

#include "orivex/testing/VirtualSnapshot.h"

namespace orivex::testing {

class ViewMirrorTree::Mirror final : public ViewMirror {
 public:
  Mirror(ViewMirrorTree& tree, View& view) : tree_(tree), view_(view) {}

  void viewChanged(ViewChange change) override {
    if (change == ViewChange::subviews) followSubviews();
  }

  void viewDestroyed() override {
    detachChildren();
    tree_.mirrors_.erase(&view_);  // and with it this mirror
  }

  std::shared_ptr<View> snapshot() override {
    return tree_.drawn_ ? std::make_shared<VirtualSnapshot>(view_) : nullptr;
  }

  void followSubviews() {
    const auto before = std::exchange(children_, {});
    for (const auto& child : view_.subviews()) {
      children_.push_back(child.get());
      tree_.attach(*child);
    }
    for (View* child : before) {
      if (std::find(children_.begin(), children_.end(), child) == children_.end()) tree_.detach(*child);
    }
  }

  void detachChildren() {
    for (View* child : std::exchange(children_, {})) tree_.detach(*child);
  }

  void untie() { view_.setMirror(nullptr); }

 private:
  ViewMirrorTree& tree_;
  View& view_;
  std::vector<View*> children_;  // as last seen: a view is told of a change before the child that left it can end
};

ViewMirrorTree::ViewMirrorTree(View& root) {
  attach(root);
}

ViewMirrorTree::~ViewMirrorTree() {
  for (const auto& [view, mirror] : mirrors_) mirror->untie();
}

void ViewMirrorTree::attach(View& view) {
  auto& mirror = mirrors_[&view];
  if (!mirror) {
    mirror = std::make_unique<Mirror>(*this, view);
    view.setMirror(mirror.get());
  }
  mirror->followSubviews();
}

void ViewMirrorTree::detach(View& view) {
  const auto found = mirrors_.find(&view);
  if (found == mirrors_.end()) return;
  const auto mirror = std::move(found->second);
  mirrors_.erase(found);
  mirror->untie();
  mirror->detachChildren();
}

}  // namespace orivex::testing

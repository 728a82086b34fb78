#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/ui/ContentViews.h"
#include "orivex/platform/ui/View.h"
#include "orivex/platform/ui/Window.h"

namespace orivex {
namespace {

std::shared_ptr<View> tagged(int tag) {
  auto view = std::make_shared<View>();
  view->setTag(tag);
  return view;
}

std::vector<int> tags(const View& view) {
  std::vector<int> tags;
  for (const auto& child : view.subviews()) tags.push_back(child->tag());
  return tags;
}

TEST(ViewTree, KeepsTheOrderInWhichViewsLie) {
  const auto root = tagged(1);
  const auto a = tagged(2);
  const auto b = tagged(3);
  const auto c = tagged(4);
  root->addSubview(a);
  root->addSubview(b);
  root->insertSubview(c, 0);
  EXPECT_EQ(tags(*root), (std::vector{4, 2, 3}));
  root->addSubview(c);  // already there: comes to the front
  EXPECT_EQ(tags(*root), (std::vector{2, 3, 4}));
  root->insertSubview(a, 99);
  EXPECT_EQ(tags(*root), (std::vector{3, 4, 2}));
  b->removeFromSuperview();
  b->removeFromSuperview();
  EXPECT_EQ(tags(*root), (std::vector{4, 2}));
  EXPECT_FALSE(root->hasSubview(*b));
  EXPECT_EQ(b->superview(), nullptr);
  root->removeAllSubviews();
  EXPECT_TRUE(root->subviews().empty());
  EXPECT_EQ(a->superview(), nullptr);
}

TEST(ViewTree, AViewIsInOneTreeAtATimeAndOutlivesItsParentUnharmed) {
  auto one = tagged(1);
  const auto other = tagged(2);
  const auto child = tagged(3);
  const auto grandchild = tagged(3);
  one->addSubview(child);
  child->addSubview(grandchild);
  EXPECT_EQ(one->viewWithTag(1), one);
  EXPECT_EQ(one->viewWithTag(3), child) << "the first, from the view itself down";
  EXPECT_EQ(one->viewWithTag(2), nullptr);
  other->addSubview(child);
  EXPECT_TRUE(one->subviews().empty());
  EXPECT_EQ(child->superview(), other.get());
  one->addSubview(child);
  one.reset();
  EXPECT_EQ(child->superview(), nullptr);
  EXPECT_EQ(grandchild->superview(), child.get());
}

TEST(ViewTree, KnowsTheWindowThatShowsIt) {
  auto window = std::make_shared<Window>();
  const auto parent = tagged(1);
  const auto child = tagged(2);
  parent->addSubview(child);
  EXPECT_EQ(child->window(), nullptr);
  const auto content = window->contentView();
  content->addSubview(parent);
  EXPECT_EQ(child->window(), window.get());
  std::vector<int> ended;
  window->setEndEditingHandler([&](const View& view) { ended.push_back(view.tag()); });
  child->endEditing();
  window.reset();
  EXPECT_EQ(child->window(), nullptr);
  child->endEditing();
  EXPECT_EQ(ended, std::vector{2});
}

class Mirror final : public ViewMirror {
 public:
  void viewChanged(ViewChange change) override { changes.push_back(change); }
  void viewDestroyed() override { destroyed = true; }
  std::shared_ptr<View> snapshot(const View&) override { return nullptr; }

  std::vector<ViewChange> changes;
  bool destroyed = false;
};

TEST(ViewMirror, HearsEveryChangeOnceAndTheEnd) {
  Mirror mirror;
  auto view = std::make_shared<Label>();
  view->setMirror(&mirror);
  view->setAlpha(0.5);
  view->setAlpha(0.5);
  view->setHidden(true);
  view->setTransform({3, 0});
  view->setBackgroundColor(Color::white());
  view->setCornerRadius(4);
  view->setClipsToBounds(true);
  view->setCenter({10, 10});
  view->setText("hello");
  view->addSubview(std::make_shared<View>());
  view->removeAllSubviews();
  using enum ViewChange;
  EXPECT_EQ(mirror.changes, (std::vector{visibility, visibility, placement, drawing, drawing, drawing, placement,
                                         content, subviews, subviews}));
  view.reset();
  EXPECT_TRUE(mirror.destroyed);
}

TEST(View, IsLaidOutWhenItsSizeChangesOnly) {
  View view({0, 0, 10, 10});
  int layouts = 0;
  view.setLayoutHandler([&] { ++layouts; });
  view.setFrame({5, 5, 10, 10});
  EXPECT_EQ(layouts, 0);
  view.setFrame({5, 5, 20, 10});
  EXPECT_EQ(layouts, 1);
  view.setCenter({0, 0});
  EXPECT_EQ(view.frame(), (Rect{-10, -5, 20, 10}));
  EXPECT_EQ(layouts, 1);
}

}  // namespace
}  // namespace orivex

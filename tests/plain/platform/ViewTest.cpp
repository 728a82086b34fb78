#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "orivex/platform/ui/View.h"

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

}  // namespace
}  // namespace orivex

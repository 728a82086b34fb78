#include <gtest/gtest.h>

#include "photos/library/MediaSelection.h"

namespace orivex::gtk {
namespace {

MediaItemPtr item(const std::string& name, std::int64_t size = 1) {
  const auto type = name.starts_with("v") ? MediaType::video : MediaType::image;
  return std::make_shared<MediaItem>(MediaItem{"/photos/" + name, type, 0, size});
}

std::string names(const MediaSelection& selection) {
  std::string all;
  for (const auto& selected : selection.items()) all += std::string(nameOf(*selected)) + " ";
  return all;
}

// What a visitor does, one tap after the other, and what must have come of it: "p" names are photos, "v" videos.
struct Case {
  const char* name;
  PhotoLibraryOptions options;
  std::vector<std::string> taps;
  std::string selected;
  std::string lastRefusal;
};

class SelectionRules : public ::testing::TestWithParam<Case> {};

TEST_P(SelectionRules, LeaveWhatWasTapped) {
  const auto& [name, options, taps, selected, lastRefusal] = GetParam();
  MediaSelection selection(options);
  std::string refusal;
  for (const auto& tap : taps) {
    refusal = selection.refusal(*item(tap)).value_or("");
    selection.toggle(item(tap));
  }
  EXPECT_EQ(names(selection), selected);
  EXPECT_EQ(refusal, lastRefusal);
}

constexpr const char* mixed = "照片和视频不能同时选择";

INSTANTIATE_TEST_SUITE_P(
    Taps, SelectionRules,
    ::testing::Values(Case{"InTheirOrder", {}, {"p2", "p1", "p3"}, "p2 p1 p3 ", ""},
                      Case{"AgainTakesAway", {}, {"p1", "p2", "p3", "p2"}, "p1 p3 ", ""},
                      Case{"AgainAfterTakingAwayComesLast", {}, {"p1", "p2", "p1", "p1"}, "p2 p1 ", ""},
                      Case{"TenthIsRefused",
                           {},
                           {"p1", "p2", "p3", "p4", "p5", "p6", "p7", "p8", "p9", "p10"},
                           "p1 p2 p3 p4 p5 p6 p7 p8 p9 ",
                           "最多只能选择9项"},
                      Case{"FullStillTakesAway", {.maxSelectCount = 2}, {"p1", "p2", "p1", "p3"}, "p2 p3 ", ""},
                      Case{"VideoAfterPhotoIsRefused", {}, {"p1", "v1"}, "p1 ", mixed},
                      Case{"PhotoAfterVideoIsRefused", {}, {"v1", "p1"}, "v1 ", mixed},
                      Case{"TheOtherKindOnceEmptied", {}, {"p1", "p1", "v1"}, "v1 ", ""},
                      Case{"MixedWhenAllowed", {.allowMixSelect = true}, {"p1", "v1", "p2"}, "p1 v1 p2 ", ""},
                      Case{"MixedCountTogether",
                           {.allowMixSelect = true, .maxSelectCount = 2},
                           {"p1", "v1", "p2"},
                           "p1 v1 ",
                           "最多只能选择2项"},
                      Case{"MixingIsToldBeforeTheCount", {.maxSelectCount = 1}, {"p1", "v1"}, "p1 ", mixed},
                      Case{"NoneAskedForStillTakesOne", {.maxSelectCount = 0}, {"p1", "p2"}, "p1 ", "最多只能选择1项"}),
    [](const auto& row) { return row.param.name; });

TEST(MediaSelection, FollowsTheFiles) {
  MediaSelection selection({});
  for (const auto* name : {"p1", "p2", "p3"}) selection.toggle(item(name, 100));
  const auto library = [](const std::string& path) {
    return path.ends_with("p2") ? nullptr : item(path.substr(path.rfind('/') + 1), path.ends_with("p3") ? 7 : 100);
  };
  EXPECT_TRUE(selection.refresh(library));
  EXPECT_EQ(names(selection), "p1 p3 ");
  EXPECT_EQ(selection.bytes(), 107) << "a file that has changed counts as it is now";
  EXPECT_EQ(selection.numberOf(*item("p3")), 2U);
  EXPECT_EQ(selection.numberOf(*item("p2")), 0U);
}

}  // namespace
}  // namespace orivex::gtk

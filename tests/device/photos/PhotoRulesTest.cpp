#include <gtest/gtest.h>

#include "photos/library/MediaCatalog.h"
#include "photos/library/MediaSelection.h"
#include "photos/library/MediaTexts.h"
#include "photos/preview/PictureZoom.h"

namespace orivex::gtk {
namespace {

MediaItemPtr item(const std::string& name, std::int64_t size = 1) {
  const auto type = name.starts_with("v") ? MediaType::video : MediaType::image;
  return std::make_shared<MediaItem>(MediaItem{"/photos/" + name, type, 0, size});
}

std::string names(const MediaSelection& selection) {
  std::string all;
  for (const auto& selected : selection.items()) all += std::string(nameOf(selected->path)) + " ";
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

TEST(MediaTexts, SizesAreRoundedInTheUnitThatFits) {
  const std::vector<std::pair<std::int64_t, std::string>> cases{{0, "0 B"},
                                                                {1023, "1023 B"},
                                                                {1024, "1 KB"},
                                                                {1024 * 1023, "1023 KB"},
                                                                {1048575, "1.0 MB"},
                                                                {12'897'485, "12.3 MB"},
                                                                {1'073'741'823, "1.0 GB"},
                                                                {1'288'490'189, "1.2 GB"}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(sizeText(bytes), text) << bytes;
  EXPECT_EQ(originalText(0, 0), "原图");
  EXPECT_EQ(originalText(2, 12'897'485), "原图 (12.3 MB)");
}

TEST(MediaTexts, DurationsReadLikeAClock) {
  const std::vector<std::pair<double, std::string>> cases{{0, "0:00"},      {0.2, "0:01"},  {7.4, "0:07"},
                                                          {59.6, "1:00"},   {725, "12:05"}, {3599.5, "1:00:00"},
                                                          {3723, "1:02:03"}};
  for (const auto& [seconds, text] : cases) EXPECT_EQ(durationText(seconds), text) << seconds;
}

TEST(MediaTexts, ACellTellsKindNameLengthAndPlace) {
  const MediaItem photo{"/p/IMG_1.jpg"};
  const MediaItem video{"/p/a\xff.mp4", MediaType::video};
  EXPECT_EQ(accessibleText(photo, std::nullopt, 0), "照片 IMG_1.jpg, 未选择");
  EXPECT_EQ(accessibleText(photo, std::nullopt, 2), "照片 IMG_1.jpg, 已选择, 第2项");
  EXPECT_EQ(accessibleText(video, 7, 0), "视频 a\xEF\xBF\xBD.mp4, 时长 0:07, 未选择");
}

TEST(MediaNames, TheEndingOfTheNameDecides) {
  for (const char* name : {"a.jpg", "a.JPEG", "b.c.Png", "x.heic", "照片.webp"}) {
    EXPECT_EQ(mediaTypeOf(name), MediaType::image) << name;
  }
  for (const char* name : {"a.mp4", "A.MOV", "x.webm"}) EXPECT_EQ(mediaTypeOf(name), MediaType::video) << name;
  for (const char* name : {"a.txt", "jpg", ".a.jpg", ".jpg", "a.jpg.part", "a.", ""}) {
    EXPECT_EQ(mediaTypeOf(name), std::nullopt) << name;
  }
  EXPECT_EQ(mediaTypeOf("a.mp4", {.images = true, .videos = false}), std::nullopt);
  EXPECT_EQ(mediaTypeOf("a.jpg", {.images = false, .videos = true}), std::nullopt);
}

TEST(MediaCatalog, GroupsFoldersNewestFirstAndTellsNamesakesApart) {
  MediaItems items;
  const auto add = [&](const char* path, std::int64_t modified) {
    items.push_back(std::make_shared<MediaItem>(MediaItem{path, MediaType::image, modified, 1}));
  };
  // By path, as the index gives them.
  add("/p/2023/cat/a.jpg", 10);
  add("/p/2024/cat/b.jpg", 30);
  add("/p/2024/cat/c.jpg", 40);
  add("/p/trip/d.jpg", 50);
  add("/p/x.jpg", 20);
  add("/p/y.jpg", 20);
  const MediaCatalog catalog(items, {{"/p", "图片"}}, true);
  std::string albums;
  for (const auto& album : catalog.albums()) {
    albums += album.name + ":";
    for (const auto& item : *album.items) albums += " " + std::string(nameOf(item->path));
    albums += "\n";
  }
  EXPECT_EQ(albums,
            "最近项目: d.jpg c.jpg b.jpg x.jpg y.jpg a.jpg\n"
            "trip: d.jpg\n2024/cat: c.jpg b.jpg\n图片: x.jpg y.jpg\n2023/cat: a.jpg\n");
  EXPECT_EQ(catalog.find("/p/x.jpg"), items[4]);
  EXPECT_EQ(catalog.find("/p/x"), nullptr);
}

TEST(PictureZoom, KeepsWhatIsUnderTheFingersAndLeavesNoGap) {
  PictureZoom zoom({360, 240}, {360, 600});
  zoom.scaleTo(2, {90, 100});
  EXPECT_EQ(zoom.offset(), (Translation{-90, 0})) << "still less high than the area";
  zoom.scaleTo(100, {0, 0});
  EXPECT_EQ(zoom.scale(), PictureZoom::largest);
  EXPECT_EQ(zoom.offset(), (Translation{-180, 0}));
  zoom.moveTo({-5000, 5000});
  EXPECT_EQ(zoom.offset(), (Translation{-540, 180}));
  zoom.scaleTo(0.1, {90, 100});
  EXPECT_FALSE(zoom.isIn());
  EXPECT_EQ(zoom.offset(), Translation{});
}

}  // namespace
}  // namespace orivex::gtk

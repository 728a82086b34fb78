#include <gtest/gtest.h>

#include "photos/library/MediaCatalog.h"
#include "photos/library/MediaSelection.h"
#include "photos/library/MediaTexts.h"
#include "photos/preview/PictureZoom.h"

namespace orivex::gtk {
namespace {

MediaItemPtr item(const std::string& name) {
  const auto type = name.starts_with("v") ? MediaType::video : MediaType::image;
  return std::make_shared<MediaItem>(MediaItem{"/photos/" + name, type, 0, 1});
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

TEST(MediaSelection, IsWhatTheTapsLeave) {
  const std::string mixed = "照片和视频不能同时选择";
  const Case cases[] = {
      {"in their order", {}, {"p2", "p1", "p3"}, "p2 p1 p3 ", ""},
      {"again takes away", {}, {"p1", "p2", "p3", "p2"}, "p1 p3 ", ""},
      {"again after taking away comes last", {}, {"p1", "p2", "p1", "p1"}, "p2 p1 ", ""},
      {"full still takes away", {.maxSelectCount = 2}, {"p1", "p2", "p1", "p3"}, "p2 p3 ", ""},
      {"video after photo", {}, {"p1", "v1"}, "p1 ", mixed},
      {"photo after video", {}, {"v1", "p1"}, "v1 ", mixed},
      {"the other kind once emptied", {}, {"p1", "p1", "v1"}, "v1 ", ""},
      {"mixed when allowed", {.allowMixSelect = true}, {"p1", "v1", "p2"}, "p1 v1 p2 ", ""},
      {"mixed count together",
       {.allowMixSelect = true, .maxSelectCount = 2},
       {"p1", "v1", "p2"},
       "p1 v1 ",
       "最多只能选择2项"},
      {"as large as a video may be", {.maxVideoSize = 1, .videoTooLarge = "large"}, {"v1", "v2"}, "v1 v2 ", ""},
      {"a video too large", {.maxVideoSize = 0, .videoTooLarge = "large"}, {"v1"}, "", "large"},
      {"photos are as large as they like", {.maxVideoSize = 0, .videoTooLarge = "large"}, {"p1"}, "p1 ", ""},
      {"mixing is told before the count", {.maxSelectCount = 1}, {"p1", "v1"}, "p1 ", mixed},
      {"none asked for still takes one", {.maxSelectCount = 0}, {"p1", "p2"}, "p1 ", "最多只能选择1项"},
  };
  for (const auto& [name, options, taps, selected, lastRefusal] : cases) {
    MediaSelection selection(options);
    std::string refusal;
    for (const auto& tap : taps) {
      refusal = selection.refusal(*item(tap)).value_or("");
      selection.toggle(item(tap));
    }
    EXPECT_EQ(names(selection), selected) << name;
    EXPECT_EQ(refusal, lastRefusal) << name;
  }
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
  EXPECT_EQ(accessibleText(photo, std::nullopt, 0, false), "照片 IMG_1.jpg, 未选择");
  EXPECT_EQ(accessibleText(photo, std::nullopt, 2, false), "照片 IMG_1.jpg, 已选择, 第2项");
  EXPECT_EQ(accessibleText(video, 7, 0, false), "视频 a\xEF\xBF\xBD.mp4, 时长 0:07, 未选择");
  EXPECT_EQ(accessibleText(photo, std::nullopt, 0, true), "照片 IMG_1.jpg, 无法打开");
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

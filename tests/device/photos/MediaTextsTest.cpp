#include <gtest/gtest.h>

#include "photos/library/MediaCatalog.h"
#include "photos/library/MediaNames.h"
#include "photos/library/MediaTexts.h"

namespace orivex::gtk {
namespace {

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
    for (const auto& item : *album.items) albums += " " + std::string(nameOf(*item));
    albums += "\n";
  }
  EXPECT_EQ(albums,
            "最近项目: d.jpg c.jpg b.jpg x.jpg y.jpg a.jpg\n"
            "trip: d.jpg\n2024/cat: c.jpg b.jpg\n图片: x.jpg y.jpg\n2023/cat: a.jpg\n");
  EXPECT_EQ(catalog.find("/p/x.jpg"), items[4]);
  EXPECT_EQ(catalog.find("/p/x"), nullptr);
}

}  // namespace
}  // namespace orivex::gtk

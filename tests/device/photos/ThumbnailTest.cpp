#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include "FakeMedia.h"
#include "photos/library/FolderScan.h"
#include "photos/library/ThumbnailCache.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

constexpr auto large = ThumbnailSize::large;

class ThumbnailTest : public ::testing::Test {
 protected:
  // A file that was last modified at `seconds`, long ago.
  MediaItem file(const std::string& name, const std::string& contents, std::time_t seconds = 1'700'000'000) {
    const auto path = folder_.write(name, contents);
    const utimbuf times{seconds, seconds};
    utime(path.c_str(), &times);
    return *FolderScan::itemAt(path, {});
  }

  // Writes what another program might have left, in the place of `item`'s thumbnail.
  void writeForeign(const MediaItem& item, const std::string& uri, const std::string& modified) {
    const auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 32, 20));
    const auto path = cache_.pathOf(item, large);
    fs::create_directories(path.parent_path());
    ASSERT_TRUE(gdk_pixbuf_save(picture.get(), path.c_str(), "png", nullptr, "tEXt::Thumb::URI", uri.c_str(),
                                "tEXt::Thumb::MTime", modified.c_str(), nullptr));
  }

  TemporaryFolder folder_;
  ThumbnailCache cache_{folder_.path() / "cache"};
  const FakeMedia media_{};
};

TEST_F(ThumbnailTest, LieWhereEveryProgramLooksForThem) {
  const ThumbnailCache cache("/cache");
  // The digest of "file:///home/jens/photos/me.png", the freedesktop thumbnail standard's own example.
  const MediaItem item{"/home/jens/photos/me.png"};
  EXPECT_EQ(cache.pathOf(item, large), "/cache/large/c6ee772d9e49320e97ec29a7eb5b1697.png");
  EXPECT_EQ(cache.pathOf(item, ThumbnailSize::xLarge).parent_path(), "/cache/x-large");
}

TEST_F(ThumbnailTest, OfAnotherProgramAreTakenOnlyWhenTheyAreOfThisFileAsItIs) {
  const auto item = file("p/with blank.jpg", "x");
  const std::string uri = "file://" + folder_.path().string() + "/p/with%20blank.jpg";
  struct Case {
    const char* name;
    std::string uri, modified;
    bool isTaken;
  };
  for (const auto& [name, ofUri, modified, isTaken] :
       {Case{"fresh", uri, "1700000000", true}, Case{"older", uri, "1699999999", false},
        Case{"newer", uri, "1700000001", false}, Case{"of another file", uri + "x", "1700000000", false},
        Case{"without a time", uri, "", false}}) {
    writeForeign(item, ofUri, modified);
    EXPECT_EQ(cache_.read(item, large).has_value(), isTaken) << name;
  }
  std::ofstream(cache_.pathOf(item, large)) << "\x89PNG damaged";
  EXPECT_FALSE(cache_.read(item, large)) << "damaged";
  fs::remove(cache_.pathOf(item, large));
  EXPECT_FALSE(cache_.read(item, large)) << "missing";
}

TEST_F(ThumbnailTest, AreWrittenForTheVisitorAloneAndReadBack) {
  const auto item = file("clip.mp4", "x");
  const auto made = media_(item, 256, 256);
  ASSERT_TRUE(made);
  cache_.write(item, large, *made);
  const auto path = cache_.pathOf(item, large);
  struct stat facts {};
  ASSERT_EQ(stat(path.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0600U);
  ASSERT_EQ(stat(path.parent_path().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0700U);
  EXPECT_EQ(std::distance(fs::directory_iterator(path.parent_path()), {}), 1) << "a temporary file was left behind";
  const auto read = cache_.read(item, large);
  ASSERT_TRUE(read);
  EXPECT_EQ(gdk_pixbuf_get_width(read->picture.get()), 64);
  EXPECT_EQ(read->duration, 7.0) << "the length spares the next look at the video";
}

TEST_F(ThumbnailTest, OfAFileThatMayStillChangeAreNotKept) {
  const auto path = folder_.write("new.jpg", pictureData(8, 8, 0xff0000ff, "jpeg"));
  const auto young = *FolderScan::itemAt(path, {});
  cache_.write(young, large, *media_(young, 256, 256));
  cache_.writeFailure(young);
  const auto old = file("old.jpg", pictureData(8, 8, 0xff0000ff, "jpeg"));
  const auto made = *media_(old, 256, 256);
  file("old.jpg", "something else", 1'700'000'500);
  cache_.write(old, large, made);
  EXPECT_FALSE(fs::exists(folder_.path() / "cache"));
}

TEST_F(ThumbnailTest, FailuresAreRememberedUntilTheFileChanges) {
  const auto item = file("broken.jpg", "no picture");
  EXPECT_FALSE(cache_.hasFailed(item));
  cache_.writeFailure(item);
  EXPECT_TRUE(cache_.hasFailed(item));
  EXPECT_FALSE(cache_.read(item, large));
  EXPECT_FALSE(cache_.hasFailed(file("broken.jpg", "repaired", 1'700'000'900)));
}

TEST_F(ThumbnailTest, AreScaledUprightAndNeverEnlarged) {
  struct Case {
    const char* name;
    std::string contents;
    int width, height;
  };
  // A JPEG of 40 x 20 whose EXIF says that it was taken with the camera turned.
  auto turned = pictureData(40, 20, 0x0000ffff, "jpeg");
  const std::string exif(
      "\xFF\xE1\0\x22"
      "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0",
      36);
  turned.insert(2, exif);
  for (const auto& [name, contents, width, height] :
       {Case{"wide", pictureData(2000, 1000, 0xff0000ff, "jpeg"), 256, 128},
        Case{"tall", pictureData(300, 600, 0xff0000ff, "png"), 128, 256},
        Case{"a line", pictureData(3000, 1, 0xff0000ff, "png"), 256, 1},
        Case{"small", pictureData(20, 10, 0xff0000ff, "png"), 20, 10}, Case{"turned", turned, 20, 40}}) {
    // The name lies about the format, as names do.
    const auto made = media_(file("some.png", contents), 256, 256);
    ASSERT_TRUE(made) << name;
    EXPECT_EQ(gdk_pixbuf_get_width(made->picture.get()), width) << name;
    EXPECT_EQ(gdk_pixbuf_get_height(made->picture.get()), height) << name;
  }
}

}  // namespace
}  // namespace orivex::gtk

#include <gtest/gtest.h>

#include "GlibMainQueue.h"
#include "photos/library/MediaLibrary.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

class MediaLibraryTest : public ::testing::Test {
 protected:
  void open(const MediaFilter& filter = {}) {
    library_ = std::make_unique<MediaLibrary>(queue_, std::vector<MediaRoot>{{folder_.path() / "root", "图片"}}, filter,
                                              [this](auto catalog) {
                                                catalog_ = std::move(catalog);
                                                ++news_;
                                              });
    EXPECT_TRUE(wait([&] { return catalog_ && catalog_->isComplete(); }, 10));
  }
  // Until the watching has begun everywhere.
  static void waitForWatch() { pass(0.5); }

  std::string shown() const {
    std::set<std::string> names;
    if (catalog_) {
      for (const auto& item : *catalog_->albums().front().items) names.emplace(nameOf(item->path));
    }
    std::string all;
    for (const auto& name : names) all += name + " ";
    return all;
  }
  bool shows(const std::string& names) {
    return wait([&] { return shown() == names; }, 10);
  }

  GlibMainQueue queue_;
  TemporaryFolder folder_;
  std::unique_ptr<MediaLibrary> library_;
  std::shared_ptr<const MediaCatalog> catalog_;
  int news_ = 0;
};

TEST_F(MediaLibraryTest, FilesComeChangeAndGoByThemselves) {
  folder_.write("root/a.jpg", "x");
  folder_.write("root/sub/b.jpg", "x");
  open();
  EXPECT_EQ(shown(), "a.jpg b.jpg ");
  waitForWatch();
  const auto before = catalog_->find(folder_.path() / "root/a.jpg");

  folder_.write("root/screenshot.png", "x");
  EXPECT_TRUE(shows("a.jpg b.jpg screenshot.png ")) << "a new file: " << shown();
  EXPECT_EQ(catalog_->find(folder_.path() / "root/a.jpg"), before) << "an unchanged file was replaced";

  folder_.write("root/a.jpg", "longer");
  EXPECT_TRUE(wait([&] { return catalog_->find(folder_.path() / "root/a.jpg")->size == 6; }, 10)) << "a changed file";

  fs::rename(folder_.path() / "root/screenshot.png", folder_.path() / "root/sub/moved.png");
  EXPECT_TRUE(shows("a.jpg b.jpg moved.png ")) << "a moved file: " << shown();
  EXPECT_TRUE(catalog_->find(folder_.path() / "root/sub/moved.png"));

  fs::remove(folder_.path() / "root/sub/b.jpg");
  EXPECT_TRUE(shows("a.jpg moved.png ")) << "a removed file: " << shown();
}

TEST_F(MediaLibraryTest, FoldersComeAndGoWithWhatTheyHold) {
  fs::create_directories(folder_.path() / "root");
  folder_.write("other/new/deep/a.jpg", "x");
  folder_.write("other/.hidden/secret.jpg", "x");
  open();
  waitForWatch();
  fs::rename(folder_.path() / "other/new", folder_.path() / "root/new");
  fs::rename(folder_.path() / "other/.hidden", folder_.path() / "root/.hidden");
  EXPECT_TRUE(shows("a.jpg ")) << shown();
  waitForWatch();
  folder_.write("root/new/deep/b.jpg", "x");
  EXPECT_TRUE(shows("a.jpg b.jpg ")) << "the new folder is watched too: " << shown();
  fs::rename(folder_.path() / "root/new", folder_.path() / "other/new");
  EXPECT_TRUE(shows("")) << shown();
  fs::rename(folder_.path() / "other/new", folder_.path() / "root/back");
  EXPECT_TRUE(shows("a.jpg b.jpg ")) << shown();
}

TEST_F(MediaLibraryTest, AFileThatComesBetweenTheScanAndTheWatchIsSeen) {
  folder_.write("root/a.jpg", "x");
  open();
  folder_.write("root/b.jpg", "x");
  EXPECT_TRUE(shows("a.jpg b.jpg ")) << shown();
}

TEST_F(MediaLibraryTest, OnlyTheWantedKindIsListed) {
  folder_.write("root/a.jpg", "x");
  folder_.write("root/b.mp4", "x");
  open({.images = false, .videos = true});
  waitForWatch();
  folder_.write("root/c.jpg", "x");
  folder_.write("root/d.mp4", "x");
  EXPECT_TRUE(shows("b.mp4 d.mp4 ")) << shown();
}

TEST_F(MediaLibraryTest, NothingIsToldAfterItsEnd) {
  for (int index = 0; index < 300; ++index) folder_.write("root/" + std::to_string(index) + ".jpg", "x");
  open();
  waitForWatch();
  folder_.write("root/late.jpg", "x");
  pass(0.1);  // noted, but not told yet
  library_.reset();
  const int before = news_;
  pass(0.5);
  EXPECT_EQ(news_, before);
}

}  // namespace
}  // namespace orivex::gtk

#include <map>

#include <gtest/gtest.h>
#include <unistd.h>

#include "photos/library/FolderScan.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

namespace fs = std::filesystem;

class Findings final : public ScanVisitor {
 public:
  bool foundFolder(const std::string& path, std::int64_t modified) override {
    EXPECT_GT(modified, 0);
    folders.push_back(path);
    return path.find("refused") == std::string::npos;
  }
  void foundItem(MediaItem item) override { items.emplace(item.path, item); }
  bool isStopped() const override { return items.size() == most; }

  std::vector<std::string> folders;
  std::map<std::string, MediaItem> items;
  std::size_t most = 1000;
};

class FolderScanTest : public ::testing::Test {
 protected:
  // Paths below the folder, in alphabetical order.
  std::string scan(const std::vector<std::string>& roots = {""}) {
    std::vector<std::string> paths;
    paths.reserve(roots.size());
    for (const auto& root : roots) paths.push_back((folder_.path() / root).string());
    if (paths.front().ends_with("/")) paths.front().pop_back();
    FolderScan({}, findings_).run(paths);
    std::string found;
    for (const auto& [path, item] : findings_.items) found += path.substr(folder_.path().string().size() + 1) + " ";
    return found;
  }

  TemporaryFolder folder_;
  Findings findings_;
};

TEST_F(FolderScanTest, FindsNestedFilesByNameWhateverTheyHold) {
  folder_.write("a.jpg", "not a jpeg");
  folder_.write("b/c/d/video.MP4", "");
  folder_.write("b/empty.png", "");
  folder_.write("b/notes.txt", "x");
  folder_.write("b/.hidden.jpg", "x");
  folder_.write(".cache/e.jpg", "x");
  folder_.write("refused/below/f.jpg", "x");
  fs::create_directories(folder_.path() / "folder.jpg");
  ASSERT_EQ(mkfifo((folder_.path() / "pipe.jpg").c_str(), 0600), 0);
  EXPECT_EQ(scan(), "a.jpg b/c/d/video.MP4 b/empty.png ");
  const auto& photo = findings_.items.at(folder_.path() / "a.jpg");
  EXPECT_EQ(photo.size, 10);
  const auto& video = findings_.items.at(folder_.path() / "b/c/d/video.MP4");
  EXPECT_EQ(video.type, MediaType::video);
  const auto written = fs::last_write_time(video.path).time_since_epoch();
  const auto sinceUnix = std::chrono::file_clock::to_sys(fs::file_time_type(written)).time_since_epoch();
  EXPECT_EQ(video.modified, std::chrono::nanoseconds(sinceUnix).count());
}

TEST_F(FolderScanTest, LinksAreFollowedButNeverInCirclesOrTwice) {
  const TemporaryFolder elsewhere;
  elsewhere.write("far.jpg", "x");
  folder_.write("a/one.jpg", "x");
  folder_.write("z/two.jpg", "x");
  fs::create_directory_symlink(folder_.path(), folder_.path() / "a/up");
  fs::create_directory_symlink("/", folder_.path() / "a/everything");
  fs::create_directory_symlink(folder_.path() / "z", folder_.path() / "a/sibling");
  fs::create_directory_symlink(elsewhere.path(), folder_.path() / "other");
  fs::create_directory_symlink("nowhere", folder_.path() / "broken");
  fs::create_directory_symlink("self", folder_.path() / "self");
  fs::create_symlink(folder_.path() / "a/one.jpg", folder_.path() / "link.jpg");
  EXPECT_EQ(scan(), "a/one.jpg link.jpg other/far.jpg z/two.jpg ");
}

TEST_F(FolderScanTest, RootsInsideEachOtherAndMissingOnesDoNoHarm) {
  folder_.write("pictures/videos/a.mp4", "x");
  EXPECT_EQ(scan({"pictures", "pictures/videos", "missing"}), "pictures/videos/a.mp4 ");
}

TEST_F(FolderScanTest, WhatCannotBeReadIsLeftOut) {
  folder_.write("closed/a.jpg", "x");
  folder_.write("open/b.jpg", "x");
  fs::permissions(folder_.path() / "closed", fs::perms::none);
  fs::permissions(folder_.path(), fs::perms::all);
  // The superuser reads everything, so it looks with the eyes of nobody.
  constexpr uid_t nobody = 65534;
  const bool isSuperuser = geteuid() == 0;
  if (isSuperuser) {
    ASSERT_EQ(seteuid(nobody), 0);
  }
  const auto found = scan();
  if (isSuperuser) {
    ASSERT_EQ(seteuid(0), 0);
  }
  EXPECT_EQ(found, "open/b.jpg ");
  fs::permissions(folder_.path() / "closed", fs::perms::owner_all);
}

TEST_F(FolderScanTest, StopsWhenTold) {
  for (int index = 0; index < 50; ++index) folder_.write(std::to_string(index) + ".jpg", "x");
  findings_.most = 3;
  scan();
  EXPECT_EQ(findings_.items.size(), 3U);
}

}  // namespace
}  // namespace orivex::gtk

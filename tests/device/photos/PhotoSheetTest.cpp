#include <gtest/gtest.h>

#include "LogLines.h"
#include "PhotoStage.h"
#include "VideoFiles.h"

namespace orivex::gtk {
namespace {

class PhotoSheetTest : public ::testing::Test, protected PhotoStage {};

TEST_F(PhotoSheetTest, TheKeyboardAloneIsEnough) {
  fill(12);
  open();
  settle();
  ASSERT_TRUE(cell("p01.jpg"));
  // Past the video: p02 by Space in the grid, p03 in the preview. Then on to the full-quality switch and the button.
  VisitorWindow::press({"Right", "Right", "space", "Return"});
  EXPECT_TRUE(reads("3 / 13"));
  VisitorWindow::press({"Right"});
  EXPECT_TRUE(reads("4 / 13"));
  VisitorWindow::press({"space", "Escape"});
  EXPECT_TRUE(reads("完成(2)"));
  settle();
  VisitorWindow::press({"Right", "space", "Tab", "space", "Tab", "Return"});
  EXPECT_TRUE(isGone());
  ASSERT_EQ(results_.size(), 1U);
  EXPECT_EQ(names(results_[0]), "p02.jpg p03.jpg p04.jpg ");
  EXPECT_TRUE(results_[0].isOriginal);
}

TEST_F(PhotoSheetTest, RefusalsAreToldAndChangeNothing) {
  fill(11);
  folder_.write("root/p99.jpg", "no picture");
  open();
  settle();
  clickCircle("p99.jpg");
  EXPECT_TRUE(reads("这张照片无法打开"));
  for (int index = 1; index <= 9; ++index) clickCircle("p0" + std::to_string(index) + ".jpg");
  EXPECT_TRUE(reads("完成(9)"));
  clickCircle("p10.jpg");
  EXPECT_TRUE(reads("最多只能选择9项"));
  clickCircle("clip.mp4");
  EXPECT_TRUE(reads("照片和视频不能同时选择"));
  visitor_.click(cell("clip.mp4")->widget());
  EXPECT_FALSE(reads("1 / 13")) << "a dimmed video opened";
  clickText("完成(9)");
  EXPECT_TRUE(isGone());
  EXPECT_EQ(names(results_.at(0)), "p01.jpg p02.jpg p03.jpg p04.jpg p05.jpg p06.jpg p07.jpg p08.jpg p09.jpg ");
}

TEST_F(PhotoSheetTest, WhateverClosesItWithoutASelectionCallsNobody) {
  fill(3);
  struct Case {
    const char* name;
    std::function<void()> close;
  };
  for (const auto& [name, close] :
       {Case{"the button", [this] { clickText("取消"); }}, Case{"Escape", [] { VisitorWindow::press({"Escape"}); }},
        Case{"a tap beside it", [] { VisitorWindow::click(180, 10); }},
        Case{"the end of the window", [this] { visitor_.destroy(); }}}) {
    SCOPED_TRACE(name);
    open();
    settle();
    clickCircle("p01.jpg");
    EXPECT_TRUE(reads("完成(1)"));
    close();
    EXPECT_TRUE(isGone());
  }
  pass(0.3);
  EXPECT_TRUE(results_.empty());
}

TEST_F(PhotoSheetTest, OneThatOpensWhileAnotherSlidesAwayStartsAfresh) {
  fill(3);
  open();
  settle();
  clickCircle("p02.jpg");
  clickText("完成(1)");
  EXPECT_TRUE(wait([&] { return results_.size() == 1; }, 5));
  open();
  settle();
  EXPECT_FALSE(findByText(GTK_WIDGET(visitor_.overlay()), "完成(1)"));
  clickCircle("p03.jpg");
  clickText("完成(1)");
  EXPECT_TRUE(isGone());
  EXPECT_EQ(names(results_.at(1)), "p03.jpg ");
}

TEST_F(PhotoSheetTest, FilesThatComeAndGoShowAndLeaveTheSelection) {
  fill(3);
  open();
  settle();
  clickCircle("p01.jpg");
  clickCircle("p02.jpg");
  EXPECT_TRUE(reads("完成(2)"));
  pass(0.5);  // until the folder is watched
  std::filesystem::remove(folder_.path() / "root/p01.jpg");
  folder_.write("root/screenshot.png", pictureData(8, 8, 0xffffffff, "png"));
  EXPECT_TRUE(reads("完成(1)"));
  EXPECT_TRUE(cell("screenshot.png"));
  clickText("完成(1)");
  EXPECT_TRUE(isGone());
  EXPECT_EQ(names(results_.at(0)), "p02.jpg ");
}

TEST_F(PhotoSheetTest, AFileThatGoesWhileThePreviewSlidesToItGivesWayToItsNeighbour) {
  fill(2);
  open();
  settle();
  ASSERT_TRUE(cell("p01.jpg"));
  visitor_.click(cell("p01.jpg")->widget());
  EXPECT_TRUE(reads("2 / 3"));
  pass(0.5);  // until the folder is watched
  const LogLines log;
  std::filesystem::remove(folder_.path() / "root/p02.jpg");
  pass(0.08);
  VisitorWindow::press({"Right"});
  EXPECT_TRUE(reads("2 / 2"));
  EXPECT_FALSE(log.has("Error in a callback"));
}

TEST_F(PhotoSheetTest, AlbumsNarrowTheGridAndKeepTheSelection) {
  fill(3);
  folder_.write("root/Camera/c1.jpg", pictureData(8, 8, 0xffffffff, "jpeg"));
  open();
  settle();
  clickCircle("p01.jpg");
  clickText("最近项目");
  settle();
  EXPECT_TRUE(reads("图片"));
  clickText("Camera");
  settle();
  EXPECT_TRUE(cell("c1.jpg"));
  EXPECT_FALSE(findCell(GTK_WIDGET(visitor_.overlay()), "p01.jpg"));
  clickCircle("c1.jpg");
  clickText("完成(2)");
  EXPECT_TRUE(isGone());
  EXPECT_EQ(names(results_.at(0)), "p01.jpg c1.jpg ");
}

TEST_F(PhotoSheetTest, AnEmptyLibraryTellsWhereItLooked) {
  open({.allowSelectVideo = false});
  EXPECT_TRUE(reads("没有照片"));
  EXPECT_TRUE(reads("在这些文件夹里没有找到:\n" + (folder_.path() / "root").string()));
  folder_.write("root/first.jpg", pictureData(8, 8, 0xffffffff, "jpeg"));
  EXPECT_TRUE(cell("first.jpg")) << "the folder that was not there is watched too";
}

TEST_F(PhotoSheetTest, VideosTellTheirLengthOnceItIsKnown) {
  fill(1);
  open();
  settle();
  ASSERT_TRUE(cell("clip.mp4"));
  visitor_.click(cell("clip.mp4")->widget());
  EXPECT_TRUE(reads("视频 0:07"));
}

TEST_F(PhotoSheetTest, AVideoPlaysInThePreviewUntilItsEndOrTheVisitors) {
  folder_.write("root/broken.mp4", "no video");
  writeMedia(folder_.path() / "root/clip.mp4", testVideo());
  open();
  settle();
  ASSERT_TRUE(cell("clip.mp4"));
  visitor_.click(cell("clip.mp4")->widget());
  settle();
  auto* const button = findByClass(GTK_WIDGET(visitor_.overlay()), "play");
  const auto plays = [&] { return gtk_widget_get_visible(button) == FALSE; };
  const auto rests = [&] { return !plays(); };
  ASSERT_TRUE(rests());
  visitor_.click(button);
  EXPECT_TRUE(plays());
  pass(1);
  EXPECT_TRUE(plays()) << "it has ended after half of its time";
  EXPECT_TRUE(wait(rests, 10)) << "it has not ended";
  VisitorWindow::press({"Return"});
  EXPECT_TRUE(wait(plays, 5));
  VisitorWindow::click(180, 400);
  EXPECT_TRUE(wait(rests, 5)) << "a tap has not stopped it";
  VisitorWindow::press({"Right"});
  settle();
  VisitorWindow::press({"Return"});
  EXPECT_TRUE(reads("无法播放此视频"));
  EXPECT_TRUE(wait(rests, 5));
  VisitorWindow::press({"Left"});
  settle();
  VisitorWindow::press({"Return", "Escape", "Escape"});
  EXPECT_TRUE(isGone()) << "while it plays";
}

TEST_F(PhotoSheetTest, OfThousandsOnlyWhatIsSeenIsLoaded) {
  const auto data = pictureData(8, 8, 0x4080c0ff, "jpeg");
  for (int index = 0; index < 2000; ++index) folder_.write("root/" + std::to_string(index) + ".jpg", data);
  open();
  EXPECT_TRUE(wait([&] { return library_.content() && library_.content()->grid().shownThumbnails() >= 15; }, 20));
  pass(1);
  EXPECT_EQ(library_.content()->grid().items()->size(), 2000U);
  int loaded = 0;
  for (const auto& item : *library_.content()->grid().items()) {
    auto* const found = findCell(GTK_WIDGET(visitor_.overlay()), std::string(nameOf(*item)));
    if (found && found->hasThumbnail()) ++loaded;
    if (!found && loaded > 0) break;
  }
  EXPECT_GE(loaded, 15);
  EXPECT_LE(loaded, 36) << "cells out of sight have asked for thumbnails";
}

}  // namespace
}  // namespace orivex::gtk

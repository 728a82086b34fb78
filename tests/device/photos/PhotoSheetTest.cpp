#include <future>

#include <gtest/gtest.h>
#include <utime.h>

#include "PhotoStage.h"
#include "glib/GRef.h"
#include "photos/library/FolderScan.h"
#include "photos/library/ThumbnailCache.h"
#include "support/FileChooser.h"
#include "support/LogLines.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

class PhotoSheetTest : public ::testing::Test, protected PhotoStage {
 protected:
  static bool chooserOpens() {
    return wait([] { return openFileChooser() != nullptr; }, 20);
  }
  GtkWidget* playButton() const { return findByClass(GTK_WIDGET(visitor_.overlay()), "play"); }
};

TEST_F(PhotoSheetTest, TheKeyboardAloneIsEnough) {
  fill(12);
  open();
  ASSERT_TRUE(cell("p01.jpg"));
  // Past the video: p02 by Space in the grid, p03 in the preview. Then on to the full-quality switch and the button.
  VisitorWindow::press({"Right", "Right", "space", "Return"});
  EXPECT_TRUE(reads("3 / 13"));
  VisitorWindow::press({"Right"});
  EXPECT_TRUE(reads("4 / 13"));
  // Closer, a picture is looked at from edge to edge before the next one comes.
  VisitorWindow::press({"ctrl+plus", "plus", "Right", "Right", "Right", "Right"});
  EXPECT_TRUE(reads("5 / 13"));
  VisitorWindow::press({"plus", "ctrl+0", "Left"});
  EXPECT_TRUE(reads("4 / 13"));
  VisitorWindow::press({"space", "Escape"});
  EXPECT_TRUE(reads("完成(2)"));
  waitForSlide();
  VisitorWindow::press({"Right", "space", "Tab"});
  auto* const original = visitor_.focus();
  ASSERT_TRUE(GTK_IS_CHECK_BUTTON(original));
  for (const char* arrow : {"Left", "Up", "Right", "Down", "KP_Left", "KP_Right"}) {
    gtk_widget_grab_focus(original);
    VisitorWindow::press({arrow});
    EXPECT_FALSE(gtk_check_button_get_active(GTK_CHECK_BUTTON(original))) << arrow;
  }
  gtk_widget_grab_focus(original);
  VisitorWindow::press({"space", "Tab", "Return"});
  EXPECT_TRUE(isGone());
  ASSERT_EQ(results_.size(), 1U);
  EXPECT_EQ(names(results_[0]), "p02.jpg p03.jpg p04.jpg ");
  EXPECT_TRUE(results_[0].isOriginal);
}

TEST_F(PhotoSheetTest, KeysThatComeBeforeThePhotosReachNoButton) {
  fill(3);
  std::promise<void> release;
  const auto released = release.get_future().share();
  for (int worker = 0; worker < 64; ++worker) Platform::current().mainQueue.global([released] { released.wait(); });
  open();
  const auto waits = [&] { return visitor_.focus() && gtk_widget_has_css_class(visitor_.focus(), "waiting"); };
  EXPECT_TRUE(wait(waits, 20));
  VisitorWindow::press({"Right", "space", "Down", "space", "Return"});
  release.set_value();
  ASSERT_TRUE(cell("p01.jpg"));
  VisitorWindow::press({"Right", "space"});
  EXPECT_TRUE(reads("完成(1)"));
}

TEST_F(PhotoSheetTest, RefusalsAreToldAndChangeNothing) {
  fill(11);
  folder_.write("root/p99.jpg", "no picture");
  open();
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
  EXPECT_EQ(confirmed("完成(9)"), "p01.jpg p02.jpg p03.jpg p04.jpg p05.jpg p06.jpg p07.jpg p08.jpg p09.jpg ");
}

TEST_F(PhotoSheetTest, FilesThatComeAndGoShowAndLeaveTheSelection) {
  fill(3);
  open();
  clickCircle("p01.jpg");
  clickCircle("p02.jpg");
  EXPECT_TRUE(reads("完成(2)"));
  pass(0.5);  // until the folder is watched
  std::filesystem::remove(folder_.path() / "root/p01.jpg");
  folder_.write("root/screenshot.png", pictureData(8, 8, 0xffffffff, "png"));
  EXPECT_TRUE(reads("完成(1)"));
  EXPECT_TRUE(cell("screenshot.png"));
  EXPECT_EQ(confirmed("完成(1)"), "p02.jpg ");
}

TEST_F(PhotoSheetTest, AlbumsNarrowTheGridAndKeepTheSelection) {
  fill(3);
  addPhoto("root/Camera/c1.jpg");
  open();
  clickCircle("p01.jpg");
  clickText("最近项目");
  waitForSlide();
  EXPECT_TRUE(reads("图片"));
  clickText("Camera");
  waitForSlide();
  EXPECT_TRUE(cell("c1.jpg"));
  EXPECT_FALSE(findCell(GTK_WIDGET(visitor_.overlay()), "p01.jpg"));
  clickCircle("c1.jpg");
  EXPECT_EQ(confirmed("完成(2)"), "p01.jpg c1.jpg ");
}

TEST_F(PhotoSheetTest, WhatIsChosenElsewhereFollowsTheRulesOfTheSheet) {
  fill(2);
  addPhoto("elsewhere/a.jpg");
  addPhoto("elsewhere/b.jpg");
  open({.maxSelectCount = 2});
  clickCircle("p01.jpg");
  clickText("最近项目");
  waitForSlide();
  clickText("浏览…");
  ASSERT_TRUE(chooserOpens());
  EXPECT_TRUE(gtk_file_chooser_get_select_multiple(GTK_FILE_CHOOSER(openFileChooser())));
  ASSERT_TRUE(chooseFile(folder_.path() / "elsewhere/a.jpg"));
  EXPECT_TRUE(reads("完成(2)"));
  ASSERT_TRUE(cell("a.jpg")) << "it shows, to look at it and to think better of it";
  EXPECT_EQ(cell("p01.jpg"), nullptr);
  clickText("浏览");
  waitForSlide();
  clickText("浏览…");
  ASSERT_TRUE(chooserOpens());
  ASSERT_TRUE(chooseFile(folder_.path() / "elsewhere/b.jpg"));
  EXPECT_TRUE(reads("最多只能选择2项"));
  EXPECT_EQ(confirmed("完成(2)"), "p01.jpg a.jpg ");
}

TEST_F(PhotoSheetTest, WhereNoFolderCanBeReadTheDesktopsChooserOpensAtOnce) {
  addPhoto("elsewhere/a.jpg");
  open();
  ASSERT_TRUE(chooserOpens());
  cancelFileChooser();
  EXPECT_TRUE(reads("没有照片或视频"));
  clickText("浏览…");
  ASSERT_TRUE(chooserOpens());
  ASSERT_TRUE(chooseFile(folder_.path() / "elsewhere/a.jpg"));
  EXPECT_EQ(confirmed("完成(1)"), "a.jpg ");
}

TEST_F(PhotoSheetTest, TabStaysInThePreviewAndReachesItsButtons) {
  fill(3);
  open();
  clickPicture("p01.jpg");
  waitForSlide();
  auto* const preview = findByClass(GTK_WIDGET(visitor_.overlay()), "orivex-preview");
  auto* const mark = findByClass(preview, "mark");
  bool hasReachedMark = false;
  for (int step = 0; step < 6; ++step) {
    VisitorWindow::press({"Tab"});
    ASSERT_TRUE(visitor_.focus());
    EXPECT_FALSE(gtk_widget_is_ancestor(visitor_.focus(), library_.content()->grid().widget())) << step;
    EXPECT_FALSE(gtk_widget_has_css_class(visitor_.focus(), "album")) << step;
    if (visitor_.focus() != mark) continue;
    hasReachedMark = true;
    VisitorWindow::press({"space"});
    EXPECT_TRUE(reads("完成(1)"));
    break;
  }
  EXPECT_TRUE(hasReachedMark);
}

TEST_F(PhotoSheetTest, APhoneHeldSidewaysShowsItsButtonsAtEveryTextSize) {
  std::filesystem::create_directory(folder_.path() / "root");
  gtk_window_set_default_size(visitor_.window(), 640, 360);
  auto* const settings = gtk_settings_get_default();
  int usual = 0;
  g_object_get(settings, "gtk-xft-dpi", &usual, nullptr);
  for (const int percent : {100, 150, 200}) {
    SCOPED_TRACE(percent);
    g_object_set(settings, "gtk-xft-dpi", 96 * 1024 * percent / 100, nullptr);
    open();
    for (const char* const name : {"photos-original", "photos-confirm"}) {
      auto* const button = findBelow(GTK_WIDGET(visitor_.overlay()), [&](GtkWidget* widget) {
        return std::string(gtk_widget_get_name(widget)) == name;
      });
      double right = 0;
      double bottom = 0;
      gtk_widget_translate_coordinates(button, GTK_WIDGET(visitor_.window()), gtk_widget_get_width(button),
                                       gtk_widget_get_height(button), &right, &bottom);
      EXPECT_LE(right, 640) << name;
      EXPECT_LE(bottom, 360) << name;
      EXPECT_GT(bottom, 300) << name;
    }
    EXPECT_TRUE(reads("没有照片或视频")) << "the empty page";
    clickText("取消");
    EXPECT_TRUE(isGone());
  }
  g_object_set(settings, "gtk-xft-dpi", usual, nullptr);
}

TEST_F(PhotoSheetTest, AVideoThatIsBrokenOrTooLargeCannotBeSelectedAndSaysWhy) {
  folder_.write("root/broken.mp4", "no video");
  folder_.write("root/large.mp4", std::string(50'001, 'v'));
  folder_.write("root/small.mp4", std::string(50'000, 'v'));
  open({.maxVideoSize = 50'000, .videoTooLarge = "太大"});
  clickCircle("broken.mp4");
  EXPECT_TRUE(reads("这个视频无法打开"));
  clickCircle("large.mp4");
  EXPECT_TRUE(reads("太大"));
  clickCircle("small.mp4");
  EXPECT_EQ(confirmed("完成(1)"), "small.mp4 ");
}

TEST_F(PhotoSheetTest, WhatWasChosenUnseenAndIsBrokenLeavesTheSelection) {
  fill(1);
  addPhoto("elsewhere/a.jpg");
  const auto broken = folder_.write("elsewhere/b.jpg", "no picture");
  open();
  clickCircle("p01.jpg");
  clickText("最近项目");
  waitForSlide();
  clickText("浏览…");
  ASSERT_TRUE(chooserOpens());
  ASSERT_TRUE(chooseFile(broken));
  EXPECT_TRUE(reads("这张照片无法打开"));
  EXPECT_EQ(confirmed("完成(1)"), "p01.jpg ");
}

TEST_F(PhotoSheetTest, AFolderThatMayNotBeReadIsNotCalledEmpty) {
  folder_.write("root", "no folder");  // which nobody may enter, not even root
  open();
  ASSERT_TRUE(chooserOpens());
  cancelFileChooser();
  EXPECT_TRUE(reads("无法访问照片和视频"));
  EXPECT_TRUE(reads("没有权限读取这些文件夹:\n" + (folder_.path() / "root").string()));
  clickText("浏览…");
  EXPECT_TRUE(chooserOpens());
  cancelFileChooser();
}

TEST_F(PhotoSheetTest, CountsReadFromLeftToRightInRightToLeftLayouts) {
  fill(8);
  gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
  open();
  clickPicture("clip.mp4");
  ASSERT_TRUE(reads("1 / 9"));
  auto* const layout = gtk_label_get_layout(GTK_LABEL(findByText(GTK_WIDGET(visitor_.overlay()), "1 / 9")));
  PangoRectangle first{};
  PangoRectangle last{};
  pango_layout_index_to_pos(layout, 0, &first);
  pango_layout_index_to_pos(layout, 4, &last);
  EXPECT_LT(first.x, last.x);
  gtk_widget_set_default_direction(GTK_TEXT_DIR_LTR);
}

TEST_F(PhotoSheetTest, AnEmptyLibraryTellsWhereItLooked) {
  open({.allowSelectVideo = false});
  ASSERT_TRUE(chooserOpens());
  cancelFileChooser();
  EXPECT_TRUE(reads("没有照片"));
  EXPECT_TRUE(reads("在这些文件夹里没有找到:\n" + (folder_.path() / "root").string()));
  addPhoto("root/first.jpg");
  EXPECT_TRUE(cell("first.jpg")) << "the folder that was not there is watched too";
}

TEST_F(PhotoSheetTest, AVideoPlaysInThePreviewUntilItsEndOrTheVisitors) {
  const LogLines log;
  folder_.write("root/broken.mp4", "no video");
  writeMedia(folder_.path() / "root/clip.mp4", testVideo());
  open();
  clickPicture("clip.mp4");
  waitForSlide();
  auto* const button = playButton();
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
  waitForSlide();
  VisitorWindow::press({"Return"});
  EXPECT_TRUE(reads("无法播放此视频"));
  EXPECT_TRUE(wait(rests, 5));
  VisitorWindow::press({"Left"});
  waitForSlide();
  VisitorWindow::press({"Return", "Escape", "Escape"});
  EXPECT_TRUE(isGone()) << "while it plays";
}

TEST_F(PhotoSheetTest, AVideoOfWhichAnotherProgramHasMadeAPictureIsReadBeforeItPlays) {
  std::time_t modified = 1'700'000'000;
  for (const char* name : {"clip.mp4", "broken.mp4"}) {
    const auto path = folder_.path() / "root" / name;
    std::filesystem::create_directories(path.parent_path());
    writeMedia(path, testVideo());
    const utimbuf times{--modified, modified};
    utime(path.c_str(), &times);
    const auto kept =
        ThumbnailCache(folder_.path() / "cache").pathOf(*FolderScan::itemAt(path, {}), ThumbnailSize::large);
    std::filesystem::create_directories(kept.parent_path());
    const auto picture = GRef<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 32, 20));
    ASSERT_TRUE(gdk_pixbuf_save(picture.get(), kept.c_str(), "png", nullptr, "tEXt::Thumb::URI",
                                Url::fromFilePath(path.string()).absoluteString().c_str(), "tEXt::Thumb::MTime",
                                std::to_string(modified).c_str(), "tEXt::Thumb::Movie::Length", "2", nullptr));
  }
  open();
  clickPicture("clip.mp4");
  EXPECT_TRUE(reads("视频 0:07")) << "the other program's length counts";
  waitForSlide();
  auto* const button = playButton();
  VisitorWindow::press({"Return"});
  EXPECT_TRUE(wait([&] { return gtk_widget_get_visible(button) == FALSE; }, 5));
  VisitorWindow::press({"Right"});
  waitForSlide();
  VisitorWindow::press({"Return"});
  EXPECT_TRUE(reads("无法播放此视频")) << "it plays what the decoder does not read";
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
    auto* const found = findCell(GTK_WIDGET(visitor_.overlay()), std::string(nameOf(item->path)));
    if (found && found->hasThumbnail()) ++loaded;
    if (!found && loaded > 0) break;
  }
  EXPECT_GE(loaded, 15);
  EXPECT_LE(loaded, 36) << "cells out of sight have asked for thumbnails";
}

}  // namespace
}  // namespace orivex::gtk

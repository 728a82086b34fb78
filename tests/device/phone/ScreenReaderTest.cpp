#include <filesystem>
#include <fstream>
#include <string>

#include "device/photos/PhotoStage.h"
#include "support/CameraFixture.h"
#include "support/ScreenFixture.h"
#include "support/ScreenReader.h"
#include "support/Visitor.h"
#include "ui/AlertDialog.h"

#include "orivex/platform/ports/Documents.h"
#include "orivex/platform/ports/ProgressOverlay.h"
#include "orivex/voice/RecordingView.h"

namespace orivex::gtk {
namespace {

class PhotosToAReader : public ::testing::Test, protected PhotoStage {
 protected:
  ScreenReader reader_;
};

TEST_F(PhotosToAReader, SelectionsRefusalsAndPagesAreSaid) {
  fill(12);
  open({.allowMixSelect = false, .maxSelectCount = 2});
  clickCircle("p01.jpg");
  EXPECT_EQ(reader_.heardUntil("已选择1项"), "已选择1项");
  clickCircle("p02.jpg");
  EXPECT_EQ(reader_.heardUntil("已选择2项"), "已选择2项");
  clickCircle("p03.jpg");
  EXPECT_EQ(reader_.heardUntil("最多只能选择2项"), "最多只能选择2项");
  clickPicture("p02.jpg");
  const std::string second = "第3项, 共13项, 照片 p02.jpg, 已选择, 第2项";
  EXPECT_EQ(reader_.heardUntil(second), second);
  waitForSlide();
  hands("swipe", 300, 360, 60, 360);
  const std::string third = "第4项, 共13项, 照片 p03.jpg, 未选择";
  EXPECT_EQ(reader_.heardUntil(third), third);
}

TEST_F(PhotosToAReader, EveryControlHasAName) {
  fill(12);
  open();
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("照片 p01.jpg, 未选择"));
  clickText("最近项目");
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("最近项目, 13项"));
  clickText("最近项目");
  waitForSlide();
  clickPicture("p02.jpg");
  waitForSlide();
  EXPECT_EQ(reader_.nameless(), "");
}

class CameraToAReader : public CameraFixture {
 protected:
  ScreenReader reader_;
};

TEST_F(CameraToAReader, EveryControlHasAName) {
  openLive();
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("轻触拍照，按住摄像"));
  tapShutter();
  ASSERT_TRUE(waitForReview());
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("使用"));
}

/// An application that opens documents, in the home of this device.
struct Viewer {
  Viewer() {
    const std::filesystem::path applications = std::filesystem::path(g_get_user_data_dir()) / "applications";
    std::filesystem::create_directories(applications);
    std::ofstream(applications / "org.example.Viewer.desktop")
        << "[Desktop Entry]\nType=Application\nName=Viewer\nExec=true %u\n";
    std::ofstream(std::filesystem::path(g_get_user_config_dir()) / "mimeapps.list")
        << "[Added Associations]\napplication/pdf=org.example.Viewer.desktop\n";
  }
};

TEST_F(CameraToAReader, RecordingAndNoticesAreSaid) {
  openLive();
  beginHold();
  EXPECT_EQ(reader_.heardUntil("开始录制"), "开始录制");
  endHold();
  EXPECT_EQ(reader_.heardUntil("录制时间太短"), "录制时间太短");
}

class SurfacesToAReader : public ::testing::Test {
 protected:
  const Viewer viewer_;
  VisitorWindow visitor_;
  ScreenReader reader_;
};

TEST_F(SurfacesToAReader, EveryControlHasAName) {
  auto& platform = Platform::current();
  platform.progressOverlay.setOnCancel([] {});
  platform.progressOverlay.showProgress(0.5F, "50%");
  platform.progressOverlay.offer(OverlayOffer{{}, "1 项未发送", nullptr, nullptr});
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("取消上传"));
  platform.progressOverlay.offer(std::nullopt);
  platform.progressOverlay.dismiss();

  ASSERT_TRUE(
      platform.documentInteraction.presentOptionsMenu(*Url::parse("https://example.org/a.pdf"), {}, *visitor_.view()));
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("Viewer"));

  auto dialog =
      std::make_unique<AlertDialog>(visitor_.window(), "“商店”想使用麦克风", "用来录制您的语音消息和视频的声音。");
  dialog->addAnswer("no", "不允许", ADW_RESPONSE_DEFAULT);
  dialog->addAnswer("yes", "允许", ADW_RESPONSE_SUGGESTED);
  dialog->takeFreshKeysOnly({});
  dialog->present(true, [](const char*) {});
  pass(0.5);
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.heardUntil("“商店”想使用麦克风, 用来录制您的语音消息和视频的声音。")
                  .ends_with("“商店”想使用麦克风, 用来录制您的语音消息和视频的声音。"))
      << "without a focus nobody hears of it";
  EXPECT_TRUE(reader_.finds("允许"));
  EXPECT_TRUE(reader_.finds("用来录制您的语音消息和视频的声音。"));
}

TEST_F(SurfacesToAReader, MessagesUploadsAndRecordingsAreSaid) {
  auto& overlay = Platform::current().progressOverlay;
  overlay.announce("正在上传");
  EXPECT_EQ(reader_.heardUntil("正在上传"), "正在上传");
  for (const int percentage : {3, 26, 27, 49, 51, 52, 90}) {
    overlay.showProgress(static_cast<float>(percentage) / 100, std::to_string(percentage) + "%");
  }
  overlay.showInfo("文件过大");
  overlay.offer(OverlayOffer{{}, "1 项未发送", nullptr, nullptr});
  EXPECT_EQ(reader_.heardUntil("1 项未发送"), "26%|51%|90%|文件过大|1 项未发送");

  const auto recording = RecordingView::make();
  visitor_.view()->addSubview(recording);
  pass(0.2);
  recording->setHidden(false);
  EXPECT_EQ(reader_.heardUntil("手指上滑,取消发送"), "手指上滑,取消发送");
  recording->setRecordingState(RecordingState::cancel);
  EXPECT_EQ(reader_.heardUntil("松开手指，取消发送"), "松开手指，取消发送");
  recording->setRecordingState(RecordingState::timeTooShort);
  EXPECT_EQ(reader_.heardUntil("说话时间太短"), "说话时间太短");
}

class PageToAReader : public ScreenFixture {
 protected:
  ScreenReader reader_;
};

TEST_F(PageToAReader, EveryControlOverThePageHasAName) {
  const SocketServer server(servePage("<script>" + raise("ready") +
                                      "setTimeout(() => { prompt('电话号码', '1'); alert('下班了'); })</script>"));
  const auto chat = openChat(server.url(""));
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, 20));
  EXPECT_EQ(reader_.nameless(), "");
  EXPECT_TRUE(reader_.finds("电话号码"));
  EXPECT_TRUE(pressInDialog("取消"));
  EXPECT_TRUE(wait([this] { return reader_.finds("下班了"); }, 20)) << "what a page says is not said";
}

#if !GTK_CHECK_VERSION(4, 14, 0)
TEST(AnOldReader, IsShownNotifications) {
  const VisitorWindow visitor;
  ScreenReader reader(ScreenReader::Age::old);
  Platform::current().progressOverlay.announce("正在上传");
  Platform::current().progressOverlay.announce("上传完成");
  EXPECT_EQ(reader.heardUntil("上传完成"), "正在上传|上传完成");
}
#endif

}  // namespace
}  // namespace orivex::gtk

#include "PickingTest.h"

#include "orivex/platform/ui/ViewController.h"

namespace orivex::testing {
namespace {

/// Chosen are files that the virtual codec and probe know.
class LibraryPickingTest : public PickingTest {
 protected:
  PickedMedia photo(const std::string& name) {
    const auto path = (folder_ / name).string();
    device_.imageCodec().put(path, {name, {40, 30}});
    return {MediaType::image, Url::fromFilePath(path)};
  }

  PickedMedia video(const std::string& name, std::size_t size = 3, const std::string& firstFrame = "abc") {
    const auto path = file(name, size);
    device_.mediaProbe().put(path, {2.5, {320, 240}, firstFrame});
    return {MediaType::video, Url::fromFilePath(path)};
  }

  Lines select(const std::vector<PickedMedia>& items, bool isOriginal = false) {
    ask("openPhotoLibraryPicker");
    return answersTo([&] { device_.photoLibrary().select({items, isOriginal}); });
  }

  Lines capture(const CameraOutcome& outcome) {
    ask("openCamera");
    return answersTo([&] { device_.camera().finish(outcome); });
  }

  /// What the visitor read last, if it was there for three seconds.
  std::string message() {
    const auto shown = device_.progressOverlay().shown();
    device_.advance(2.4);  // half a second has passed
    const bool stays = device_.progressOverlay().shown() == shown;
    device_.advance(0.2);
    return shown && stays && !device_.progressOverlay().shown() ? shown->status : "";
  }
};

TEST_F(LibraryPickingTest, OpensThePickersWithTheirLimits) {
  ask("openPhotoLibraryPicker");
  const auto shown = device_.photoLibrary().shown();
  ASSERT_TRUE(shown);
  EXPECT_TRUE(shown->allowSelectImage && shown->allowSelectVideo);
  EXPECT_FALSE(shown->allowMixSelect || shown->allowTakePhotoInLibrary);
  EXPECT_EQ(shown->maxSelectCount, 9);

  ask("openCamera");
  const auto presented = device_.camera().presented();
  ASSERT_TRUE(presented);
  EXPECT_TRUE(presented->allowTakePhoto && presented->allowRecordVideo);
  EXPECT_EQ(presented->minRecordDuration, 1);
  EXPECT_EQ(presented->maxRecordDuration, 10);
  EXPECT_EQ(presented->captureSize, (Size{1280, 720}));
  EXPECT_EQ(presented->videoExportType, VideoExportType::mp4);
}

TEST_F(LibraryPickingTest, DescribesPhotosInTheOrderOfSelection) {
  const auto answers = select({photo("b.heic"), photo("a.png")});
  EXPECT_EQ(
      answers,
      Lines{R"(handleSelectedFiles([{"name":"b.heic","type":"Image","base64Str":"data:image/jpeg;base64,Yi5oZWlj",)"
            R"("height":30,"width":40,"suffix":"jpg","size":6,"mimeType":"image/jpeg"},)"
            R"({"name":"a.png","type":"Image","base64Str":"data:image/jpeg;base64,YS5wbmc=",)"
            R"("height":30,"width":40,"suffix":"jpg","size":5,"mimeType":"image/jpeg"}]);)"});
  EXPECT_TRUE(device_.httpClient().uploads().empty());
  EXPECT_EQ(device_.imageCodec().calls()[0].quality, 0.7);
  select({photo("c.jpg")}, true);
  EXPECT_EQ(device_.imageCodec().calls()[2].quality, 1.0);
}

TEST_F(LibraryPickingTest, UploadsAVideoAndDescribesItWithItsFirstFrame) {
  const auto chosen = video("v.mp4", 5);
  EXPECT_EQ(select({chosen}),
            Lines{R"(handleSelectedFiles([{"name":"v.mp4","type":"Video","url":"https://files.test/1",)"
                  R"("base64Str":"data:image/jpeg;base64,YWJj","height":240,"width":320,"duration":2.5,"suffix":"mp4",)"
                  R"("size":5,"mimeType":"video/mp4"}]);)"});
  ASSERT_EQ(device_.httpClient().uploads().size(), 1U);
  EXPECT_EQ(device_.httpClient().uploads()[0].file,
            (FilePart{"file", FilePart::Path{*chosen.file.filePath()}, "v.mp4", "video/mp4"}));
  EXPECT_EQ(log_.take("\"Video "), (Lines{"\"Video duration: 2.5 seconds\"", "\"Video width: 320.0 pixels\"",
                                          "\"Video height: 240.0 pixels\""}));
  const auto answers = select({video("plain.mp4", 3, "")});
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].find("base64Str"), std::string::npos);
}

TEST_F(LibraryPickingTest, ComparesWithTheLimitOfVideosAndQuotesThatOfDocuments) {
  const struct {
    std::size_t size;
    std::int64_t documentLimit;
    const char* expected;
  } rows[] = {
      {40 << 20, 31457280, ""},
      {50 << 20, 31457280, ""},
      {(50 << 20) + 1, 31457280, "选择的视频文件大小不能超过 30 MB"},
      {60 << 20, 10000000, "选择的视频文件大小不能超过 9 MB"},
  };
  for (const auto& row : rows) {
    OVKFApiManager::shared().fileSize = row.documentLimit;
    ask("openPhotoLibraryPicker");
    const auto sheet = device_.photoLibrary().shown();
    ASSERT_TRUE(sheet);
    const bool isTooLarge = static_cast<std::int64_t>(row.size) > sheet->maxVideoSize.value_or(0);
    EXPECT_EQ(isTooLarge ? sheet->videoTooLarge : "", row.expected) << row.size;
    const auto answers = answersTo([&] { device_.photoLibrary().select({{video("v.mp4", row.size)}, false}); });
    EXPECT_EQ(answers.size(), *row.expected == '\0' ? 1U : 0U) << row.size;
    EXPECT_EQ(message(), row.expected) << row.size;
  }
}

TEST_F(LibraryPickingTest, WhatFailsIsToldAndTheOthersStillArrive) {
  const PickedMedia broken{MediaType::image, Url::fromFilePath("/files/broken.jpg")};
  const auto answers = select({photo("a.jpg"), broken, photo("b.jpg")});
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_NE(answers[0].find(R"("name":"a.jpg")"), std::string::npos);
  EXPECT_NE(answers[0].find(R"("name":"b.jpg")"), std::string::npos);
  EXPECT_EQ(answers[0].find("broken"), std::string::npos);
  EXPECT_EQ(message(), "无法读取照片:broken.jpg");

  const PickedMedia text{MediaType::video, Url::fromFilePath("/files/text.mp4")};
  EXPECT_EQ(select({text}), Lines{});
  EXPECT_EQ(message(), "无法读取视频:text.mp4");
  const PickedMedia elsewhere{MediaType::image, *Url::parse("https://files.test/a.jpg")};
  EXPECT_EQ(select({elsewhere}), Lines{});
  EXPECT_EQ(message(), "无效的路径:https://files.test/a.jpg");

  device_.httpClient().setUploadServer([](const UploadRequest& request) {
    if (request.file->fileName == "bad.mp4") return VirtualUploadReply::respond(400, R"({"msg":"不支持的文件"})");
    return stored(0.1);
  });
  const auto uploaded = select({video("bad.mp4"), video("good.mp4")});
  ASSERT_EQ(uploaded.size(), 1U);
  EXPECT_EQ(uploaded[0].find("bad.mp4"), std::string::npos);
  EXPECT_NE(uploaded[0].find("good.mp4"), std::string::npos);
  EXPECT_EQ(log_.take("\"Upload "), (Lines{"\"Upload Failed: 不支持的文件\"", "\"Upload Success \""}));
}

TEST_F(LibraryPickingTest, AVideoThatWasNotStoredIsKeptAndArrivesByItselfWhenItIsSentAgain) {
  device_.httpClient().setUploadServer([](const UploadRequest& request) {
    return request.file->fileName == "good.mp4" ? stored(0.1) : VirtualUploadReply::fail("no network");
  });
  EXPECT_EQ(select({video("bad.mp4"), video("good.mp4"), video("worse.mp4")}).size(), 1U);
  const auto recorded = video("MOV.mp4");
  EXPECT_EQ(capture(recorded), Lines{});
  const auto answer = [&](auto OverlayOffer::*act) {
    return answersTo([&] {
      const auto offer = *device_.progressOverlay().offered();
      EXPECT_EQ(offer.status, "3 项未发送:no network") << "the failure itself reads 未知错误";
      (offer.*act)();
    });
  };
  EXPECT_EQ(answer(&OverlayOffer::retry), Lines{}) << "they failed again";
  EXPECT_EQ(device_.fileManager().removed(), Lines{}) << "the captured file is lost";
  store(0.1);
  const auto again = answer(&OverlayOffer::retry);
  ASSERT_EQ(again.size(), 3U);
  for (const auto& [script, name] : {std::pair{again[0], "bad"}, {again[1], "worse"}, {again[2], "MOV"}}) {
    EXPECT_TRUE(script.starts_with(std::string(R"(handleSelectedFiles([{"name":")") + name)) << script;
    EXPECT_NE(script.find(R"("url":"u")"), std::string::npos) << script;
  }
  EXPECT_FALSE(device_.progressOverlay().offered());
  EXPECT_EQ(device_.fileManager().removed(), Lines{*recorded.file.filePath()});

  serveUploads(VirtualUploadReply::fail("no network"));
  const auto dropped = video("MOV2.mp4");
  EXPECT_EQ(capture(dropped), Lines{});
  OverlayOffer(*device_.progressOverlay().offered()).drop();
  EXPECT_EQ(device_.fileManager().removed().back(), *dropped.file.filePath());
  EXPECT_FALSE(device_.progressOverlay().offered());
}

TEST_F(LibraryPickingTest, UploadsAtMostTwoVideosAtOnce) {
  int running = 0;
  int most = 0;
  device_.httpClient().setUploadServer([&](const UploadRequest&) {
    most = std::max(most, ++running);
    device_.mainQueue().asyncAfter(1, [&] { --running; });
    return stored(1);
  });
  std::vector<PickedMedia> items;
  for (const auto* const name : {"1.mp4", "2.mp4", "3.mp4", "4.mp4", "5.mp4"}) items.push_back(video(name));
  EXPECT_EQ(select(items), Lines{});
  const auto answers = answersTo([&] { device_.advance(10); });
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(most, 2);
}

TEST_F(LibraryPickingTest, BeginsNothingMoreOnceTheChatIsClosed) {
  ask("openPhotoLibraryPicker");
  device_.photoLibrary().select({{video("1.mp4"), video("2.mp4"), video("3.mp4")}, false});
  store(5);
  device_.advance(1);
  EXPECT_EQ(device_.progressOverlay().detail(),
            "\u2066"
            "2 / 3\u2069 \u2068"
            "2.mp4\u2069");
  screen_->close();
  device_.advance(3);
  const std::weak_ptr<OVKFApi> gone = screen_;
  screen_.reset();
  device_.advance(20);
  EXPECT_TRUE(gone.expired());
  EXPECT_EQ(device_.httpClient().uploads().size(), 2U);
}

TEST_F(LibraryPickingTest, TellsBehindItWhatAChatThatLeavesHasNotSent) {
  auto& overlay = device_.progressOverlay();
  const auto told = [&] {
    device_.advance(1.1);
    EXPECT_FALSE(overlay.blocksInput());
    const auto shown = overlay.shown();
    device_.advance(3);
    EXPECT_FALSE(overlay.shown());
    return shown ? shown->status : "";
  };
  const std::vector<PickedMedia> items{video("1.mp4"), video("2.mp4"), video("3.mp4")};
  store(10);
  select(items);
  screen_->present(std::make_shared<ViewController>(), false);
  EXPECT_EQ(told(), "1 项未发送") << "the page behind gets two";
  device_.advance(20);
  screen_->dismiss(false);
  select(items);
  screen_->close();
  device_.runUntilIdle();
  screen_.reset();
  EXPECT_EQ(told(), "3 项未发送");
  screen_ = present();
  store(0.1);
  EXPECT_EQ(select(items).size(), 1U);
  screen_->close();
  device_.runUntilIdle();
  screen_.reset();
  EXPECT_EQ(told(), "");
}

TEST_F(LibraryPickingTest, DescribesWhatTheCameraTookAndDeletesIt) {
  const auto taken = photo("IMG.jpg");
  const auto answers = capture(taken);
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_NE(answers[0].find(R"("type":"Image")"), std::string::npos);
  EXPECT_EQ(device_.imageCodec().calls(), (std::vector<VirtualImageCodec::Call>{{*taken.file.filePath(), 0.7}}));

  const auto recorded = video("MOV.mp4");
  device_.httpClient().setUploadServer([&](const UploadRequest&) {
    EXPECT_EQ(device_.fileManager().removed().size(), 1U);
    return stored(0.1);
  });
  EXPECT_EQ(capture(recorded).size(), 1U);

  const PickedMedia broken{MediaType::video, Url::fromFilePath("/files/broken.mp4")};
  EXPECT_EQ(capture(broken), Lines{});
  EXPECT_EQ(device_.fileManager().removed(),
            (Lines{*taken.file.filePath(), *recorded.file.filePath(), *broken.file.filePath()}));
}

TEST_F(LibraryPickingTest, TellsWhyTheCameraCannotBeUsed) {
  const struct {
    CameraFailure failure;
    const char* text;
  } rows[] = {{CameraFailure::noCamera, "没有找到摄像头"},
              {CameraFailure::busy, "摄像头正被其他应用使用"},
              {CameraFailure::accessDenied, "没有使用摄像头的权限"},
              {CameraFailure::failed, "摄像头无法使用,请稍后重试"}};
  for (const auto& row : rows) {
    EXPECT_EQ(capture(row.failure), Lines{});
    EXPECT_EQ(message(), row.text);
  }
  log_.take();
  EXPECT_EQ(capture(CaptureCancelled{}), Lines{});
  EXPECT_EQ(log_.take("\"Camera"), Lines{"\"Camera was cancelled\""});
  EXPECT_EQ(message(), "");
}

}  // namespace
}  // namespace orivex::testing

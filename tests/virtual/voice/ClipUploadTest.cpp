#include "VoiceTest.h"

namespace orivex::testing {
namespace {

class ClipUploadTest : public VoiceTest {
 protected:
  /// Records a clip of `seconds` and lets the upload end.
  void speak(double seconds) {
    device_.recordPermission().remember(true);
    act("start");
    device_.advance(seconds);
    act("end");
    device_.advance(1);
  }
};

TEST_F(ClipUploadTest, SendsTheFileFromDisk) {
  speak(1.2);
  ASSERT_EQ(device_.httpClient().uploads().size(), 1U);
  const auto& upload = device_.httpClient().uploads()[0];
  EXPECT_EQ(upload.url.absoluteString(), "https://chat.example/api/chat/outside/guest/file/upload");
  ASSERT_TRUE(upload.file);
  EXPECT_EQ(std::get<FilePart::Path>(upload.file->content).value, recordings()[0]->path);
  EXPECT_EQ(upload.file->fileName, "file");
  EXPECT_TRUE(upload.file->mimeType.starts_with("audio/")) << upload.file->mimeType;
  EXPECT_TRUE(upload.fields.empty());
  EXPECT_EQ(log_.take("Upload"), Lines{"Upload Success"});
  EXPECT_EQ(device_.fileManager().removed(), Lines{recordings()[0]->path});
}

TEST_F(ClipUploadTest, DescribesTheClipByWholeSecondsAndTheServersAddress) {
  const struct {
    double seconds;
    const char* url;
    const char* clip;
  } cases[] = {
      {1.2, "https://u/files/ab-file",
       R"("name":"ab-file","type":"Record","url":"https://u/files/ab-file","duration":1)"},
      {2.7, "https://u/a%20b.wav?x=/1#y",
       R"("name":"a b.wav","type":"Record","url":"https://u/a%20b.wav?x=/1#y","duration":2)"},
      {1, "https://u/", R"("name":"","type":"Record","url":"https://u/","duration":1)"},
  };
  for (const auto& row : cases) {
    serveUploads(VirtualUploadReply::respond(
        200, std::string(R"({"inputContentType":"a","actualContentType":"b","url":")") + row.url + R"("})"));
    speak(row.seconds);
    ASSERT_FALSE(clips().empty());
    EXPECT_EQ(clips().back(), std::string("handleSelectedRecord({") + row.clip + R"(,"suffix":"wav"});)");
  }
}

TEST_F(ClipUploadTest, TellsTheVisitorWhyItFailedAndSendsItAgainOnHisWord) {
  serveUploads(VirtualUploadReply::respond(503, "busy", 0.5));
  speak(2);
  EXPECT_EQ(device_.progressOverlay().shown()->status, "服务不可用");
  device_.advance(2.49);
  EXPECT_TRUE(device_.progressOverlay().shown());
  device_.advance(0.02);
  EXPECT_FALSE(device_.progressOverlay().shown());
  device_.advance(60);
  EXPECT_TRUE(clips().empty());
  EXPECT_TRUE(log_.take("Upload").empty());
  EXPECT_TRUE(device_.fileManager().removed().empty()) << "what the server does not have is gone";
  EXPECT_EQ(device_.httpClient().uploads().size(), 1U) << "it was sent again by itself";
  const auto& offer = device_.progressOverlay().offered();
  ASSERT_TRUE(offer);
  device_.httpClient().setUploadServer(nullptr);
  OverlayOffer(*offer).retry();
  device_.advance(1);
  ASSERT_EQ(clips().size(), 1U);
  EXPECT_NE(clips()[0].find(R"("duration":2,)"), std::string::npos) << clips()[0];
  EXPECT_EQ(device_.fileManager().removed(), Lines{recordings()[0]->path});
}

TEST_F(ClipUploadTest, AClipThatNobodyCanSendAnyMoreIsDeleted) {
  serveUploads(VirtualUploadReply::respond(503, "busy", 0.5));
  speak(2);
  device_.advance(5);
  ASSERT_TRUE(device_.progressOverlay().offered());
  EXPECT_EQ(device_.fileManager().removed(), Lines{});
  screen_->dismiss(false);
  device_.runUntilIdle();
  EXPECT_EQ(device_.fileManager().removed(), Lines{recordings()[0]->path});
}

TEST_F(ClipUploadTest, KeepsTheLengthOfAClipWhileTheNextOneIsRecorded) {
  device_.recordPermission().remember(true);
  act("start");
  device_.advance(3);
  act("end");
  act("start");
  device_.advance(1);
  ASSERT_EQ(clips().size(), 1U);
  EXPECT_NE(clips()[0].find(R"("duration":3,)"), std::string::npos) << clips()[0];
}

}  // namespace
}  // namespace orivex::testing

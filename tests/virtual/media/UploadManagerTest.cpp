#include <algorithm>

#include "ChatScreenTest.h"

#include "orivex/media/OVKFApiHelper.h"
#include "orivex/media/UploadManager.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex::testing {
namespace {

constexpr const char* stored = R"({"url":"u","inputContentType":"a","actualContentType":"b"})";

class UploadManagerTest : public ChatScreenTest {
 protected:
  UploadManagerTest() { OVKFApiManager::shared().host = "https://chat.example"; }

  /// Uploads one file and lets time pass until it is over; the failure's message, or "stored <url>".
  std::string upload(double seconds = 1) {
    std::string got;
    UploadManager().uploadFile(std::nullopt, Url::fromFilePath("/f.pdf"), std::nullopt, "f.pdf", "application/pdf",
                               std::nullopt, [&](const UploadResult& result) {
                                 EXPECT_EQ(got, "") << "completed twice";
                                 EXPECT_TRUE(device_.mainQueue().isMainThread());
                                 const auto* failure = std::get_if<UploadFailure>(&result);
                                 got =
                                     failure ? failure->message : "stored " + std::get<UploadResposeModel>(result).url;
                               });
    EXPECT_EQ(got, "") << "completed inside the call";
    device_.advance(seconds);
    return got;
  }

  /// Uploads bytes; `completion` may be null.
  static void start(Once<void(UploadResult)> completion) {
    UploadManager().uploadFile(std::nullopt, std::nullopt, "x", "f", "t", std::nullopt, std::move(completion));
  }
};

TEST_F(UploadManagerTest, SendsTheSixHeadersInOrder) {
  auto& store = OVKFApiManager::shared();
  const auto header = [](const char* entry, const char* device, const char* key) {
    return std::vector<HttpHeader>{{"Accept", "*/*"},      {"Content-Type", "multipart/form-data"},
                                   {"x-entry", entry},     {"x-device-id", device},
                                   {"Authorization", key}, {"User-Agent", OVKFApiHelper::userAgent()}};
  };
  upload();
  EXPECT_EQ(device_.httpClient().uploads().back().headers, header("", virtualDeviceId, "Bearer "));
  store.entryId = "entry";
  store.appKey = "key";
  store.guestId = "guest";
  upload();
  EXPECT_EQ(device_.httpClient().uploads().back().headers, header("entry", "guest", "Bearer key"));
}

TEST_F(UploadManagerTest, OneThatStandsStillSaysWhatItWaitsFor) {
  serveUploads(VirtualUploadReply::respond(200, stored, 30));
  std::string got;
  UploadManager().uploadFile(std::nullopt, Url::fromFilePath("/f.pdf"), std::nullopt, "f.pdf", "application/pdf",
                             std::nullopt, [&](const UploadResult& /*result*/) { got = "done"; });
  const auto& overlay = device_.progressOverlay();
  device_.advance(9.9);
  EXPECT_EQ(overlay.detail(), "f.pdf");
  device_.advance(0.2);
  EXPECT_EQ(overlay.detail(), "正在等待服务器…");
  device_.advance(20);
  EXPECT_EQ(got, "done");
  upload();
  EXPECT_EQ(overlay.detail(), "f.pdf") << "of the next one";
}

TEST_F(UploadManagerTest, TakesTheFileBeforeTheBytesAndTheOverrideBeforeTheServer) {
  const auto file = Url::fromFilePath("/a b/合同.pdf");
  const FilePart fromDisk{"file", FilePart::Path{"/a b/合同.pdf"}, "na\uFFFDme", "type"};
  const FilePart fromMemory{"file", FilePart::Bytes{"bytes"}, "na\uFFFDme", "type"};
  const struct {
    std::optional<std::string> address;
    std::optional<Url> file;
    std::optional<std::string> bytes;
    const char* target;
    std::optional<FilePart> part;
  } rows[] = {
      {std::nullopt, file, std::nullopt, "https://chat.example/api/chat/outside/guest/file/upload", fromDisk},
      {"https://other.example/x", file, "bytes", "https://other.example/x", fromDisk},
      {std::nullopt, std::nullopt, "bytes", "https://chat.example/api/chat/outside/guest/file/upload", fromMemory},
      {std::nullopt, std::nullopt, std::nullopt, "https://chat.example/api/chat/outside/guest/file/upload", {}},
  };
  for (const auto& row : rows) {
    UploadManager().uploadFile(row.address, row.file, row.bytes, "na\xFFme", "type", {{{"k", "v"}, {"l", ""}}},
                               nullptr);
    device_.advance(1);
    const auto& sent = device_.httpClient().uploads().back();
    EXPECT_EQ(sent.url.absoluteString(), row.target);
    EXPECT_EQ(sent.file, row.part) << row.target;
    EXPECT_EQ(sent.fields, (std::vector<FormField>{{"k", "v"}, {"l", ""}}));
  }
}

TEST_F(UploadManagerTest, ReadsEachReplyInTheOrderOfTheRules) {
  const TransportError broken{TransportError::other, "connection reset"};
  const TransportError silent{TransportError::other, ""};
  const std::string incomplete = R"({"url":"u","inputContentType":"a"})";
  const struct {
    UploadReply reply;
    const char* expected;
    bool logsDecoding;
  } rows[] = {
      {{HttpResponse{200, stored}, {}}, "stored u", false},
      {{HttpResponse{200, incomplete}, {}}, "JSON解析失败", true},
      {{HttpResponse{200, ""}, {}}, "未知错误", false},
      {{HttpResponse{201, stored}, {}}, "服务器错误", false},
      {{HttpResponse{302, R"({"msg":"moved"})"}, {}}, "moved", false},
      {{HttpResponse{400, R"({"msg":"太大"})"}, {}}, "太大", false},
      {{HttpResponse{400, "{}"}, {}}, "服务器错误", false},
      {{HttpResponse{400, "{\"msg\":\" \\t\u3000\"}"}, {}}, "服务器错误", false},
      {{HttpResponse{200, std::string("\xEF\xBB\xBF") + stored}, {}}, "stored u", false},
      {{HttpResponse{400, "\xEF\xBB\xBF{\"msg\":\"x\"}"}, {}}, "x", false},
      {{HttpResponse{400, R"({"msg":1})"}, {}}, "未知错误", true},
      {{HttpResponse{500, "oops"}, {}}, "未知错误", true},
      {{HttpResponse{503, R"({"msg":"X"})"}, {}}, "服务不可用", false},
      {{HttpResponse{200, ""}, broken}, "未知错误", false},
      {{HttpResponse{200, stored}, broken}, "connection reset", false},
      {{HttpResponse{200, stored}, silent}, "上传失败", false},
  };
  for (const auto& row : rows) {
    serveUploads({row.reply, 0.1});
    log_.take();
    EXPECT_EQ(upload(), row.expected);
    EXPECT_EQ(log_.take("\"Failed to decode JSON: ").size(), row.logsDecoding ? 1U : 0U) << row.expected;
  }
}

TEST_F(UploadManagerTest, ShowsHowFarItIsAndLeavesTheOverlayEmpty) {
  auto reply = VirtualUploadReply::respond(200, stored, 6, {0.0, 0.004, 0.42, 0.999, 0.9999, 1.0});
  serveUploads(reply);
  EXPECT_EQ(upload(10), "stored u");
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows ", "0.0 shows 0%", "1.0 shows 0%", "2.0 shows 42%", "3.0 shows 100%",
                                   "4.0 shows 100%", "5.0 shows ", "6.0 hides "}));
}

TEST_F(UploadManagerTest, IsOverWithAFailureWhenTheServerNeverAnswersOrThereIsNoAddress) {
  VirtualUploadReply never;
  never.isSilent = true;
  serveUploads(never);
  EXPECT_EQ(upload(120), "未知错误");
  EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);

  OVKFApiManager::shared().host = "no address";
  EXPECT_EQ(upload(), "未知错误");
  EXPECT_EQ(device_.progressOverlay().shown(), std::nullopt);
}

TEST_F(UploadManagerTest, EndsOnceWhenTheVisitorGivesUpTheOneThatIsShown) {
  serveUploads(VirtualUploadReply::respond(200, stored, 8, {0.1}));
  Lines ended;
  for (const std::string name : {"first ", "second "}) {
    start([&ended, name](const UploadResult& result) {
      const auto* failure = std::get_if<UploadFailure>(&result);
      ended.push_back(name + (failure ? failure->message : "stored"));
    });
  }
  device_.advance(1);
  device_.progressOverlay().pressCancel();
  device_.progressOverlay().pressCancel();
  EXPECT_TRUE(ended.empty());
  device_.advance(1);
  EXPECT_EQ(ended, Lines{"second 未知错误"});
  EXPECT_TRUE(device_.progressOverlay().canBeCancelled()) << "the first one goes on";
  device_.advance(10);
  EXPECT_EQ(ended, (Lines{"second 未知错误", "first stored"}));
  EXPECT_FALSE(device_.progressOverlay().shown());
}

TEST_F(UploadManagerTest, LeavesAMessageForAsLongAsItsReaderNeeds) {
  serveUploads(VirtualUploadReply::fail("gone", 1));
  start([](const UploadResult&) { OVKFApiHelper::showMessage("sorry", 3); });
  device_.advance(10);
  EXPECT_EQ(overlayStory().back(), "4.0 hides sorry");
}

TEST_F(UploadManagerTest, SharesTheOverlayWithAnotherUploadAndWithMessages) {
  std::vector<VirtualUploadReply> replies{VirtualUploadReply::respond(200, stored, 8, {0.1, 1.0}),
                                          VirtualUploadReply::respond(200, stored, 2, {0.5})};
  device_.httpClient().setUploadServer([&](const UploadRequest&) {
    auto reply = replies.front();
    replies.erase(replies.begin());
    return reply;
  });
  auto& queue = device_.mainQueue();
  queue.async([] { start(nullptr); });                                   // 0.0 to 8.0: 10%, at 4.0 the spinner
  queue.asyncAfter(1, [] { start(nullptr); });                           // 1.0 to 3.0: 50%
  queue.asyncAfter(3.5, [] { OVKFApiHelper::showMessage("note", 1); });  // 3.5 to 4.5, the spinner waits
  device_.advance(20);
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows ", "0.0 shows 10%", "1.0 shows ", "1.0 shows 50%", "3.0 shows 10%",
                                   "3.5 shows note", "4.5 shows ", "8.0 hides "}));
}

}  // namespace
}  // namespace orivex::testing

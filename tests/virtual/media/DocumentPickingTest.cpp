#include <sys/stat.h>

#include "PickingTest.h"

namespace orivex::testing {
namespace {

class DocumentPickingTest : public PickingTest {
 protected:
  /// Lets the visitor choose; the answers of the page since.
  Lines pick(const std::vector<std::string>& paths) {
    ask("openDocumentPicker");
    return answersTo([&] { device_.documentPicker().pick(paths); });
  }

  /// What the visitor read since the last call, and for how long it was there.
  std::string message() {
    device_.advance(10);
    const auto history = device_.progressOverlay().history();
    for (auto entry = history.rbegin(); entry != history.rend(); ++entry) {
      if (entry->event == VirtualProgressOverlay::Event::shown) continue;
      if (entry->panel.kind != VirtualProgressOverlay::Kind::info) continue;
      return entry->panel.status;
    }
    return "";
  }
};

TEST_F(DocumentPickingTest, AsksForTheRequestedTypesAndOnlyLogsThatTheVisitorCancelled) {
  ask("openDocumentPicker", R"({"deviceId":"visitor","mimeTypes":["application/pdf","image/*"]})");
  ASSERT_TRUE(device_.documentPicker().presented());
  EXPECT_EQ(device_.documentPicker().presented()->mimeTypes, (Lines{"application/pdf", "image/*"}));
  log_.take();
  device_.documentPicker().cancel();
  device_.advance(1);
  EXPECT_EQ(log_.take(), Lines{"\"Document picker was cancelled\""});
  ask("openDocumentPicker");
  EXPECT_EQ(device_.documentPicker().presented()->mimeTypes, Lines{});
}

TEST_F(DocumentPickingTest, UploadsTheFirstOfTheFilesAndTellsThePage) {
  const auto chosen = file("合 同.PDF", 5);
  const auto answers = pick({chosen, file("second.txt")});
  EXPECT_EQ(answers, Lines{R"(handleSelectedFiles([{"name":"合 同.PDF","type":"File","url":"https://files.test/1",)"
                           R"("suffix":"PDF","size":5,"mimeType":"application/pdf"}]);)"});
  ASSERT_EQ(device_.httpClient().uploads().size(), 1U);
  EXPECT_EQ(device_.httpClient().uploads()[0].file,
            (FilePart{"file", FilePart::Path{chosen}, "合 同.PDF", "application/pdf"}));
  const auto lines = log_.take();
  EXPECT_EQ(std::count(lines.begin(), lines.end(),
                       "\"Selected file URL: " + Url::fromFilePath(chosen).absoluteString() + "\""),
            1);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "\"Upload Success \""), 1);
  EXPECT_EQ(device_.documentPicker().openAccesses(), 0);
}

TEST_F(DocumentPickingTest, AScreenThatLeavesHidesTheUploadsOfItsOwnWindowOnly) {
  const auto other = presentInSecond();
  store(5);
  ask("openDocumentPicker");
  pageOf(*other).post("trackEvent", "{}");  // the overlay is the other's by the time that the visitor has chosen
  device_.documentPicker().pick({file("a.txt")});
  device_.advance(1);
  auto& overlay = device_.progressOverlay();
  EXPECT_NE(overlay.shownOver(), second_);
  other->dismiss(false);
  device_.advance(1);
  EXPECT_TRUE(overlay.shown());
  screen_->dismiss(false);
  device_.advance(1);
  EXPECT_FALSE(overlay.shown());
}

TEST_F(DocumentPickingTest, WhatIsSentAgainGoesToTheSessionInWhichItBegan) {
  serveUploads(VirtualUploadReply::respond(503, "x"));
  pick({file("a.txt")});
  OVKFApi().startSession("https://other.example", "other", "secret", std::make_shared<UserMappingModel>());
  OverlayOffer(*device_.progressOverlay().offered()).retry();
  device_.advance(1);
  const auto& uploads = device_.httpClient().uploads();
  ASSERT_EQ(uploads.size(), 2U);
  EXPECT_EQ(uploads[1], uploads[0]);
  EXPECT_EQ(device_.documentPicker().openAccesses(), 0);
}

TEST_F(DocumentPickingTest, MakesANameThatIsNoTextOne) {
  const auto chosen = file("\xBA\xCF\xCD\xAC.p\xE4\xBD.d\xFF");  // of an old archive, and cut
  const std::string name = "\uFFFD\uFFFD\u036C.p\uFFFD\uFFFD.d\uFFFD";
  EXPECT_EQ(pick({chosen}), Lines{"handleSelectedFiles([{\"name\":\"" + name +
                                  R"(","type":"File","url":"https://files.test/1","suffix":"d)" + "\uFFFD" +
                                  R"(","size":3,"mimeType":"application/octet-stream"}]);)"});
  EXPECT_EQ(device_.httpClient().uploads()[0].file,
            (FilePart{"file", FilePart::Path{chosen}, name, "application/octet-stream"}));
  pick({folder_ / "\xBA"});
  EXPECT_EQ(device_.progressOverlay().shown()->status, "无效的路径:" + folder_.string() + "/\uFFFD");
}

TEST_F(DocumentPickingTest, DescribesAnImageWithThePictureItself) {
  const auto picture = file("p.png");
  device_.imageCodec().put(picture, {"abc", {40, 30}});
  EXPECT_EQ(pick({picture}),
            Lines{R"(handleSelectedFiles([{"name":"p.png","type":"Image","url":"https://files.test/1","base64Str":)"
                  R"("data:image/jpeg;base64,YWJj","height":30,"width":40,"suffix":"png","size":3,)"
                  R"("mimeType":"image/png"}]);)"});
  EXPECT_EQ(device_.imageCodec().calls(), (std::vector<VirtualImageCodec::Call>{{picture, 1.0}}));
  // One that only claims to be a picture is a file like any other.
  EXPECT_EQ(pick({file("broken.jpg")}),
            Lines{R"(handleSelectedFiles([{"name":"broken.jpg","type":"File","url":"https://files.test/1",)"
                  R"("suffix":"jpg","size":3,"mimeType":"image/jpeg"}]);)"});
}

TEST_F(DocumentPickingTest, SendsAPictureWithoutWhatItTellsOfItsOwner) {
  const std::string commented("\xFF\xD8\xFF\xFE\0\x06here\xFF\xD9", 12);
  const auto picture = temporary_.write("p.jpg", commented).string();
  pick({picture});
  const FilePart::Path clean{picture, {{6, 4, ""}}};
  EXPECT_EQ(device_.httpClient().uploads().at(0).file->content, (std::variant<FilePart::Path, FilePart::Bytes>(clean)));
}

TEST_F(DocumentPickingTest, TakesAFileUpToTheLimitAndTellsThatALargerOneIsTooLarge) {
  const struct {
    std::int64_t limit;
    std::size_t size;
    const char* expected;
  } rows[] = {
      {100, 100, ""},
      {100, 0, ""},
      {100, 101, "选择的文件大小不能超过 0 MB"},
      {2097151, 2097152, "选择的文件大小不能超过 1 MB"},
  };
  int uploads = 0;
  for (const auto& row : rows) {
    ask("openDocumentPicker", R"({"deviceId":"d","fileSize":)" + std::to_string(row.limit) + "}");
    device_.documentPicker().pick({file("f", row.size)});
    EXPECT_EQ(message(), row.expected);
    uploads += *row.expected == '\0' ? 1 : 0;
    EXPECT_EQ(device_.httpClient().uploads().size(), static_cast<std::size_t>(uploads)) << row.size;
  }
}

TEST_F(DocumentPickingTest, LosesNothingOverWhatIsNoFile) {
  const auto directory = folder_ / "directory";
  std::filesystem::create_directory(directory);
  const auto pipe = folder_ / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const auto loop = folder_ / "loop";
  std::filesystem::create_symlink(loop, loop);
  for (const auto& path : {directory, pipe, loop, folder_ / "missing"}) {
    EXPECT_EQ(pick({path.string()}), Lines{});
    EXPECT_EQ(message(), "无效的路径:" + path.string());
    EXPECT_EQ(device_.documentPicker().openAccesses(), 0) << path;
  }
  device_.documentPicker().refuse(file("secret"));
  EXPECT_EQ(pick({(folder_ / "secret").string()}), Lines{});
  EXPECT_EQ(pick({}), Lines{});
  EXPECT_EQ(device_.httpClient().uploads().size(), 0U);
}

TEST_F(DocumentPickingTest, OpensAFileElsewhereOrSaysThatNothingOpensIt) {
  pageOf(*screen_).post("openFile", R"("https://chat.example/f.pdf")");
  device_.runUntilIdle();
  EXPECT_EQ(device_.documentInteraction().menus(),
            (std::vector<VirtualDocumentInteraction::Menu>{{"https://chat.example/f.pdf", screen_->view()->bounds()}}));
  device_.documentInteraction().setApplications(false);
  pageOf(*screen_).post("openFile", R"("https://chat.example/f.xyz")");
  EXPECT_EQ(message(), "没有可以打开此文件的应用");
}

}  // namespace
}  // namespace orivex::testing

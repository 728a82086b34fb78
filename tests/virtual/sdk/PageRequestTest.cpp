#include "PickingTest.h"

namespace orivex::testing {
namespace {

class PageRequestTest : public PickingTest {
 protected:
  VirtualWebEngine& page() { return pageOf(*screen_); }
  VirtualDocumentPicker& picker() { return device_.documentPicker(); }

  void request(const FileChooserRequest& request) {
    page().requestFiles(request);
    device_.runUntilIdle();
  }
};

using Paths = std::vector<std::string>;

TEST_F(PageRequestTest, WindowsOpenWhereTheMessageOpenUrlOpensThem) {
  for (const char* address : {"https://shop.example/a?b=1", "https://shop.example/商品", "unheard:1", ""}) {
    SCOPED_TRACE(address);
    const auto before = device_.application().openedUrls().size();
    page().openWindow(address);
    device_.runUntilIdle();
    const auto byWindow = device_.application().openedUrls();
    EXPECT_TRUE(log_.has(std::string("URL: ") + address));
    page().post("openUrl", '"' + std::string(address) + '"');
    device_.runUntilIdle();
    const auto& byMessage = device_.application().openedUrls();
    ASSERT_EQ(byMessage.size() - byWindow.size(), byWindow.size() - before);
    const bool opened = byWindow.size() > before;
    EXPECT_TRUE(!opened || byMessage.back() == byWindow.back());
  }
  EXPECT_EQ(device_.application().openedUrls().size(), 4U);
  EXPECT_EQ(device_.webEngines().engines().size(), 2U) << "the page and its placeholder, no other window";
}

TEST_F(PageRequestTest, AFileInputGetsWhatThePickerGives) {
  const auto blank = file("a b.pdf");
  const auto one = file("1");
  const auto two = file("2");
  const auto bill = file("发票");
  const auto secret = file("secret");
  const struct {
    const char* what;
    FileChooserRequest request;
    Paths picked;
    Paths given;
  } cases[] = {
      {"one of one", {{"application/pdf", "image/*"}, false}, {blank}, {blank}},
      {"one of several", {{}, false}, {one, two}, {one}},
      {"several", {{}, true}, {one, bill}, {one, bill}},
      {"one that is refused among several", {{}, true}, {secret, two}, {two}},
      {"the first that is not refused", {{}, false}, {secret, two, one}, {two}},
      {"nothing but a refused one", {{}, false}, {secret}, {}},
      {"nothing", {{}, true}, {}, {}},
  };
  picker().refuse(secret);
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    request(row.request);
    ASSERT_TRUE(picker().presented());
    EXPECT_EQ(picker().presented()->mimeTypes, row.request.mimeTypes);
    EXPECT_EQ(picker().presented()->multiple, row.request.multiple);
    EXPECT_FALSE(page().chosenFiles());
    picker().pick(row.picked);
    device_.runUntilIdle();
    EXPECT_EQ(page().chosenFiles(), row.given);
  }
}

TEST_F(PageRequestTest, AFileInputIsCancelledByTheVisitor) {
  request({{}, false});
  picker().cancel();
  device_.runUntilIdle();
  EXPECT_EQ(page().chosenFiles(), Paths());
}

TEST_F(PageRequestTest, ThePageMayReadItsFilesUntilTheScreenGoes) {
  for (int i = 0; i < 2; ++i) {
    request({{}, true});
    picker().pick({file("1"), file("2")});
    device_.runUntilIdle();
  }
  EXPECT_EQ(picker().openAccesses(), 4);

  request({{}, false});  // still open when the screen goes
  const std::weak_ptr<OVKFApi> gone = screen_;
  hostStack_->dismiss(false);
  screen_.reset();
  device_.advance(20);
  EXPECT_TRUE(gone.expired());
  EXPECT_EQ(picker().openAccesses(), 0);
  picker().pick({file("3")});
  device_.runUntilIdle();
  EXPECT_EQ(picker().openAccesses(), 0);
}

TEST_F(PageRequestTest, DroppedFilesAreSentAsDocuments) {
  store(0.1);
  OVKFApiManager::shared().fileSize = 1 << 20;
  const auto dropped = [&](const Paths& paths) { return answersTo([&] { page().offerFiles(paths); }); };
  const auto answers = dropped({file("a.pdf"), file("large.pdf", (1 << 20) + 1), file("发票.pdf")});
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_TRUE(answers[0].starts_with("handleSelectedFiles([")) << answers[0];
  for (const char* name : {"\"a.pdf\"", "\"发票.pdf\"", "\"url\":\"u\""}) {
    EXPECT_NE(answers[0].find(name), std::string::npos) << answers[0];
  }
  EXPECT_EQ(answers[0].find("large"), std::string::npos);
  device_.advance(10);
  EXPECT_EQ(dropped(Paths(10, file("a.pdf"))), Lines());
  EXPECT_EQ(overlayStory().back(), "10.5 shows 最多只能选择9项");

  page().completeLoad();
  page().commit("https://elsewhere.example/");
  device_.runUntilIdle();
  EXPECT_EQ(dropped({file("a.pdf")}), Lines()) << "not the chat's own page";
}

TEST_F(PageRequestTest, TheVisitorIsToldOfEachDownload) {
  page().endDownload({"账单 (2).pdf", true});
  device_.advance(10);
  page().endDownload({"big.zip", false});
  device_.advance(10);
  EXPECT_EQ(overlayStory(), (Lines{"0.0 shows 已保存到下载：账单 (2).pdf", "3.0 hides 已保存到下载：账单 (2).pdf",
                                   "10.0 shows 下载失败", "13.0 hides 下载失败"}));
}

TEST_F(PageRequestTest, AVisitorMayLeaveAPageThatHangs) {
  page().leave();
  device_.advance(1);
  EXPECT_FALSE(screen_->isViewInWindow());
}

}  // namespace
}  // namespace orivex::testing

#include <filesystem>
#include <optional>

#include "PageFixture.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

class PageRequest : public PageFixture {
 protected:
  bool waitForRequest() {
    return wait([&] { return !web_->fileRequests.empty(); }, 10);
  }

  // The link that the page reads the file by.
  static std::optional<std::filesystem::path> linkTo(const std::filesystem::path& file) {
    std::error_code notOurs;
    for (const auto& folder : std::filesystem::directory_iterator(g_get_tmp_dir())) {
      for (const auto& entry : std::filesystem::directory_iterator(folder, notOurs)) {
        if (std::filesystem::read_symlink(entry, notOurs) == file) return entry.path();
      }
    }
    return std::nullopt;
  }
};

TEST_F(PageRequest, WindowsGoElsewhereAndOnlyOnAGesture) {
  open(
      "<script>onload = () => { for (let i = 0; i < 1000; ++i) window.early = window.open('https://pop.example/'); "
      "}</script>"
      "<a id=blank target=_blank href='https://a.example/b?c=%E4%BD%A0#d'>a</a>"
      "<a id=named target=other href=/relative>b</a>");
  EXPECT_TRUE(wait([&] { return log.has("A window that nobody asked for was refused: https://pop.example/"); }, 10));
  EXPECT_EQ(evaluate("String(window.early)"), "null");
  EXPECT_EQ(web_->windows, std::vector<std::string>());

  evaluate("blank.click(); 0");
  evaluate("named.click(); 0");
  EXPECT_EQ(evaluate("String(window.open('https://c.example/'))"), "null") << "the page has no hold on what it opened";
  evaluate("window.open(''); 0");
  EXPECT_TRUE(wait([&] { return web_->windows.size() >= 3; }, 10));
  EXPECT_EQ(web_->windows,
            (std::vector<std::string>{"https://a.example/b?c=%E4%BD%A0#d", url("/relative"), "https://c.example/"}));
  EXPECT_TRUE(wait([&] { return log.has("without an address"); }, 10));
  EXPECT_EQ(evaluate("location.pathname"), "/");
}

TEST_F(PageRequest, AFileInputGetsWhatTheVisitorChose) {
  const TemporaryFolder folder;
  const std::string first = folder.write("发票 1.pdf", "one");
  const std::string second = folder.write("2.txt", "second");
  open(
      "<input id=one type=file accept='application/pdf,image/*'><input id=many type=file multiple>"
      "<script>one.oncancel = () => { window.cancelled = 1; };"
      "many.onchange = async () => { let all = ''; for (const file of many.files) "
      "all += file.name + '=' + await file.text() + ';'; window.all = all; };</script>");
  evaluate("one.click(); 0");
  ASSERT_TRUE(waitForRequest());
  EXPECT_EQ(web_->fileRequests.back(), (FileChooserRequest{{"application/pdf", "image/*"}, false}));
  std::move(web_->fileAnswer)({first});
  EXPECT_TRUE(becomes("one.files.length && one.files[0].name", "发票 1.pdf"));

  evaluate("many.click(); 0");
  ASSERT_TRUE(wait([&] { return web_->fileRequests.size() == 2; }, 10));
  EXPECT_EQ(web_->fileRequests.back(), (FileChooserRequest{{}, true}));
  const auto old = folder.write("\xBA\xCF.txt", "of an old archive");
  std::move(web_->fileAnswer)({first, second, old});
  EXPECT_TRUE(becomes("window.all", "发票 1.pdf=one;2.txt=second;\uFFFD\uFFFD.txt=of an old archive;"));
  const auto link = linkTo(old);
  ASSERT_TRUE(link);
  EXPECT_EQ(std::filesystem::status(link->parent_path()).permissions(), std::filesystem::perms::owner_all);
  closePage();
  EXPECT_FALSE(std::filesystem::exists(link->parent_path()));
}

TEST_F(PageRequest, AFileInputIsAnsweredHoweverItsRequestEnds) {
  open("<input id=one type=file><script>window.cancelled = 0; one.oncancel = () => ++window.cancelled;</script>");
  evaluate("one.click(); 0");
  ASSERT_TRUE(waitForRequest());
  std::move(web_->fileAnswer)({});
  EXPECT_TRUE(becomes("window.cancelled", "1"));

  web_->fileRequests.clear();
  evaluate("one.click(); 0");
  ASSERT_TRUE(waitForRequest());
  web_->fileRequests.clear();
  web_->fileAnswer = {};  // dropped
  EXPECT_TRUE(becomes("window.cancelled", "2"));
}

}  // namespace
}  // namespace orivex::gtk

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "PageFixture.h"
#include "support/TemporaryFolder.h"
#include "support/VideoFiles.h"
#include "web/PageDownloads.h"

namespace orivex::gtk {
namespace {

const std::string pdf = "%PDF-1.4 not really";

SocketServer::Answer file(const std::string& contents, const std::string& headers) {
  return {reply(200, contents, headers)};
}

class Download : public PageFixture {
 protected:
  Download() { useFolder(folder_.path() / "Downloads"); }

  /// Makes `folder` the visitor's own for downloads.
  static void useFolder(const std::filesystem::path& folder) {
    const auto settings = std::filesystem::path(g_get_user_config_dir());
    std::filesystem::create_directories(settings);
    std::ofstream(settings / "user-dirs.dirs") << "XDG_DOWNLOAD_DIR=\"" << folder.string() << "\"\n";
    g_reload_user_special_dirs_cache();
  }

  EndedDownload follow(const std::string& link, const std::string& attributes = "download") {
    web_->downloads.clear();
    evaluate("document.body.innerHTML = `<a id=link href='" + link + "' " + attributes + ">x</a>`; link.click(); 0");
    EXPECT_TRUE(wait([&] { return !web_->downloads.empty(); }, 10)) << link;
    return web_->downloads.empty() ? EndedDownload{} : web_->downloads.front();
  }

  std::filesystem::path downloadsFolder() const { return folder_.path() / "Downloads"; }

  std::vector<std::string> saved() const {
    std::vector<std::string> names;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(downloadsFolder(), missing)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  TemporaryFolder folder_;
};

TEST_F(Download, SavesWhatIsNoPageUnderASafeNameOfItsOwn) {
  open("page", {{"/bill", file(pdf,
                               "Content-Type: text/html\r\nContent-Disposition: attachment; "
                               "filename*=UTF-8''%E8%B4%A6%E5%8D%95.html\r\n")},
                {"/photo.png", file("png", "Content-Type: image/png\r\n")},
                {"/data.bin", file("bin", "Content-Type: application/x-unheard\r\n")},
                {"/evil", file("x", "Content-Disposition: attachment; filename=\"../../.bashrc\"\r\n")}});
  const struct {
    const char* what;
    std::string link;
    const char* attributes;
    const char* name;
    std::string contents;
  } cases[] = {
      {"an attachment", "/bill", "", "账单.html", pdf},
      {"a link that asks for it", "/photo.png", "download", "photo.png", "png"},
      {"the same once more", "/photo.png", "download", "photo (2).png", "png"},
      {"a type that cannot be shown", "/data.bin", "", "data.bin", "bin"},
      {"a name that leads elsewhere", "/evil", "", "bashrc", "x"},
      {"a data address", "data:text/plain,hello", "download=note.txt", "note.txt", "hello"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    const auto ended = follow(row.link, row.attributes);
    EXPECT_TRUE(ended.saved);
    EXPECT_EQ(ended.fileName.find('/'), std::string::npos);
    EXPECT_EQ(ended.fileName, row.name);
    EXPECT_EQ(contentsOf(downloadsFolder() / ended.fileName), row.contents);
    EXPECT_EQ(std::filesystem::status(downloadsFolder() / ended.fileName).permissions() &
                  (std::filesystem::perms::owner_exec | std::filesystem::perms::others_exec),
              std::filesystem::perms::none);
    EXPECT_EQ(evaluate("location.pathname"), "/") << "the chat must stay";
  }
  evaluate("window.blob = URL.createObjectURL(new Blob(['from the page'])); 0");
  const auto blob = follow("${blob}", "download=blob.txt");
  EXPECT_EQ(contentsOf(downloadsFolder() / blob.fileName), "from the page");
  EXPECT_EQ(saved().size(), std::size(cases) + 1) << "nothing half-done lies about";
}

TEST_F(Download, StartsOnAGestureOnlyAndOneAtATime) {
  open(
      "<a id=link href=/game.jar>x</a><iframe id=frame></iframe><script>onload = () => {"
      "for (let i = 0; i < 1000; ++i) link.click(); location.href = '/game.jar'; frame.src = '/game.jar'; }</script>",
      {{"/game.jar", file("x", "Content-Disposition: attachment; filename=game.jar\r\n")},
       {"/slow",
        {reply(200, std::string(100000, 'x'), "Content-Disposition: attachment\r\n").substr(0, 50000),
         SocketServer::Then::silence}}});
  EXPECT_TRUE(wait([&] { return log.has("nobody asked for was refused"); }, 10));
  pass(1);
  EXPECT_EQ(saved(), std::vector<std::string>());

  evaluate("location.href = '/slow'; 0");
  ASSERT_TRUE(wait([&] { return saved().size() == 2; }, 10)) << "the file and what WebKit writes to";
  evaluate("for (let i = 0; i < 1000; ++i) link.click(); 0");
  EXPECT_TRUE(wait([&] { return log.has("A second download"); }, 10));
  EXPECT_EQ(saved().size(), 2U);
}

TEST_F(Download, WhatFailsLeavesNothing) {
  const auto cut = reply(200, std::string(100000, 'x'), "Content-Disposition: attachment; filename=big.zip\r\n");
  open("page", {{"/cut", {cut.substr(0, cut.size() - 50000), SocketServer::Then::reset}}});
  EXPECT_EQ(follow("/cut", ""), (EndedDownload{"big.zip", false}));
  EXPECT_EQ(saved(), std::vector<std::string>());
  EXPECT_TRUE(log.has("A download failed"));
}

TEST_F(Download, ALostFolderIsReplacedByOurOwn) {
  useFolder("/proc/no-such-folder");
  open("page");
  const auto ended = follow("data:text/plain,hello", "download=note.txt");
  EXPECT_TRUE(ended.saved);
  const auto own = std::filesystem::path(g_get_user_data_dir()) / "orivex-sdk/downloads" / ended.fileName;
  EXPECT_EQ(contentsOf(own), "hello");
  EXPECT_EQ(std::filesystem::status(own.parent_path()).permissions(), std::filesystem::perms::owner_all);
  std::filesystem::remove(own);
}

TEST_F(Download, GoesOnWithoutItsPage) {
  const auto whole = reply(200, std::string(200000, 'x'), "Content-Disposition: attachment; filename=slow.bin\r\n");
  open("page", {{"/slow", {whole}}});
  run("location.href = '/slow'");
  ASSERT_TRUE(wait([&] { return std::filesystem::exists(downloadsFolder() / "slow.bin"); }, 10));
  closePage();
  EXPECT_TRUE(wait([&] { return std::filesystem::file_size(downloadsFolder() / "slow.bin") == 200000; }, 10));
  EXPECT_EQ(saved(), std::vector<std::string>{"slow.bin"});
}

TEST(DownloadName, IsSafeOnAnyDisk) {
  const std::string han = "字";
  std::string manyHan;
  for (int i = 0; i < 100; ++i) manyHan += han;
  const struct {
    std::string suggested;
    std::string safe;
  } cases[] = {
      {"账单 2024.pdf", "账单 2024.pdf"},
      {"", "download"},
      {"...", "download"},
      {".hidden", "hidden"},
      {"../../etc/passwd", "_.._etc_passwd"},
      {R"(C:\temp\a.txt)", "C:_temp_a.txt"},
      {"a\nb\x7f.txt", "a_b_.txt"},
      {"cod\u202Efdp.exe", "cod_fdp.exe"},
      {"trailing. . ", "trailing"},
      {"\xFFx", "\uFFFDx"},
      {manyHan + ".pdf", manyHan.substr(0, 195) + ".pdf"},
      {std::string(300, 'a'), std::string(200, 'a')},
  };
  for (const auto& row : cases) EXPECT_EQ(safeFileName(row.suggested), row.safe) << row.suggested;
}

}  // namespace
}  // namespace orivex::gtk

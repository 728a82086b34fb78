#include <filesystem>

#include <sys/stat.h>

#include "PageFixture.h"
#include "support/VideoFiles.h"

namespace orivex::gtk {
namespace {

class HostilePage : public PageFixture {
 protected:
  HostilePage() : PageFixture({{"contract"}, {}, true}) {}

  /// The folder of the component's web session below `base`.
  static std::filesystem::path webFolder(const char* base) {
    return std::filesystem::path(base) / "orivex-sdk" / program_invocation_short_name / "web";
  }

  /// Whether some file below `folder` contains `text`.
  static bool isOnDisk(const std::filesystem::path& folder, const std::string& text) {
    std::error_code gone;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, gone)) {
      if (entry.is_regular_file(gone) && contentsOf(entry.path()).find(text) != std::string::npos) return true;
    }
    return false;
  }
};

TEST_F(HostilePage, NoFrameHasTheBridge) {
  const std::string probe =
      "<script>parent.postMessage(location.pathname + ' ' + typeof webkit.messageHandlers, '*')</script>";
  open(
      "<iframe id=blank></iframe><script>window.seen = []; onmessage = (event) => seen.push(event.data);"
      "window.early = typeof blank.contentWindow.webkit.messageHandlers;"
      "webkit.messageHandlers.contract.postMessage('from the page');</script>"
      "<iframe src=/same></iframe><iframe id=other></iframe><iframe sandbox=allow-scripts src=/sandboxed></iframe>"
      "<iframe srcdoc=\"" +
          probe +
          "\"></iframe>"
          "<script>other.src = 'http://localhost:' + location.port + '/other'</script>",
      {{"/same", {reply(200, probe, htmlHeader)}},
       {"/other", {reply(200, probe, htmlHeader)}},
       {"/sandboxed", {reply(200, probe, htmlHeader)}}});
  EXPECT_TRUE(becomes("seen.sort().join()",
                      "/other undefined,/same undefined,/sandboxed undefined,"
                      "srcdoc undefined"));
  EXPECT_EQ(evaluate("early + typeof blank.contentWindow.webkit.messageHandlers"), "undefinedundefined");
  evaluate(
      "blank.src = 'about:blank'; blank.onload = () => { window.again = typeof "
      "blank.contentWindow.webkit.messageHandlers; }; 0");
  EXPECT_TRUE(becomes("window.again", "undefined"));
  EXPECT_EQ(evaluate("typeof Object.getOwnPropertyDescriptor(Object.getPrototypeOf(webkit), 'messageHandlers').get"
                     "?.call(blank.contentWindow.webkit)"),
            "undefined")
      << "the page reaches handlers of its frame, which no limit guards";
  ASSERT_EQ(web_->messages.size(), 1U);
  EXPECT_EQ(web_->messages.front().body, "\"from the page\"");
}

TEST_F(HostilePage, WhatItLeavesIsTheVisitorsAloneAndTheHostsPagesKeepTheirs) {
  for (const char* base : {g_get_user_data_dir(), g_get_user_cache_dir()}) {
    struct stat status {};
    ASSERT_EQ(stat(webFolder(base).c_str(), &status), 0) << webFolder(base);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
  }
  const std::string kept = "Cache-Control: max-age=3600\r\n";
  const std::string filler(50000, 'x');
  EXPECT_NE(webkit_web_view_get_network_session(view()), webkit_network_session_get_default());
  const auto script = [&](const std::string& name) { return SocketServer::Answer{reply(200, name + filler, kept)}; };
  open("", {{"/own?secret-address",
             {reply(200, "<script src=/kept.js></script>secret-document" + filler + "<iframe src=/frame></iframe>",
                    htmlHeader + kept)}},
            {"/frame", {reply(200, "<script src=/frame.js></script>", htmlHeader)}},
            {"/frame?again", {reply(200, "again", htmlHeader)}},
            {"/next", {reply(200, "<script src=/next.js></script>", htmlHeader)}},
            {"/kept.js", script("//kept-script")},
            {"/frame.js", script("//frame-script")},
            {"/next.js", script("//next-script")}});
  web_->load(url("/own?secret-address"));
  ASSERT_TRUE(wait([&] { return finished() == 2; }, 20));
  EXPECT_EQ(evaluate("typeof navigator.serviceWorker"), "undefined") << "one would outlive the visit";
  const auto cache = webFolder(g_get_user_cache_dir());
  EXPECT_TRUE(wait([&] { return isOnDisk(cache, "kept-script"); }, 10));
  EXPECT_FALSE(isOnDisk(cache, "secret-document"));
  // WebKit notes what a document has loaded some seconds later, or when another one comes in its place.
  evaluate(
      "const frame = document.querySelector('iframe'); frame.onload = () => { window.again = 1; };"
      "frame.src = '/frame?again'; 0");
  EXPECT_TRUE(becomes("window.again", "1"));
  web_->load(url("/next"));
  EXPECT_TRUE(wait([&] { return isOnDisk(cache, "next-script"); }, 10));
  for (const char* base : {g_get_user_data_dir(), g_get_user_cache_dir()}) {
    EXPECT_FALSE(isOnDisk(base, "secret-address")) << base;
  }
}

}  // namespace
}  // namespace orivex::gtk

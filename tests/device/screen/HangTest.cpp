#include "PageFixture.h"
#include "support/Processes.h"

namespace orivex::gtk {
namespace {

class Hang : public PageFixture {
 protected:
  // WebKit waits three seconds for an answer to the visitor's input, and so many more pass before the question.
  void hangFor(const char* condition) {
    open("<input autofocus>");
    run(std::string("setTimeout(() => { window.start = Date.now(); while (") + condition + "); window.back = 1; }, 0)");
    pass(0.5);
    for (int touch = 0; touch < 3; ++touch) {
      hands("click", 100, 300);
      hands({"key", "a"});
      pass(0.3);
    }
  }
};

TEST_F(Hang, TheVisitorMayWaitOrLeaveAndTheProcessEnds) {
  hangFor("true");
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, 30));
  ASSERT_TRUE(pressInDialog("继续等待"));
  EXPECT_TRUE(wait([] { return !openDialog(); }, 5));
  ASSERT_TRUE(wait([] { return openDialog() != nullptr; }, 20)) << "a page that still hangs is asked about again";
  EXPECT_FALSE(web_->has("leave"));
  ASSERT_TRUE(pressInDialog("离开"));
  EXPECT_TRUE(wait([&] { return web_->has("leave"); }, 5));
  EXPECT_GE(pageProcesses(), 1U);
  closePage();
  EXPECT_TRUE(wait([] { return pageProcesses() == 0; }, 8)) << "the page goes on for ever";
}

TEST_F(Hang, APageThatComesBackIsNotAskedAbout) {
  hangFor("Date.now() < window.start + 8000");
  EXPECT_TRUE(wait([&] { return log.has("does not answer"); }, 20));
  EXPECT_TRUE(becomes("window.back", "1"));
  pass(8);
  EXPECT_FALSE(openDialog());
}

}  // namespace
}  // namespace orivex::gtk

#include <algorithm>

#include "ChatScreenTest.h"

#include "orivex/models/MessageBody.h"
#include "orivex/models/MessageModel.h"
#include "orivex/models/ShortcutsModel.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex::testing {
namespace {

class Recorder : public OVKFApiConversationDelegate {
 public:
  void opened() override { story.emplace_back("opened"); }
  void revealed() override { story.emplace_back("revealed"); }
  void closed() override { story.emplace_back("closed"); }
  void failed(const ChatFailure& failure) override { failures.push_back(failure); }
  void unReadMessageCountEvent(std::int64_t count) override { story.push_back("unread " + std::to_string(count)); }
  void shortCutEvent(const ShortcutsModel& model) override { story.push_back("short cut " + *model.title); }
  void messageEvent(const std::shared_ptr<MessageModel>& model) override {
    story.push_back("message " + *model->messageBody->content);
  }

  Lines take() { return std::exchange(story, {}); }

  Lines story;
  std::vector<ChatFailure> failures;
};

class ConversationTest : public ChatScreenTest {
 protected:
  std::shared_ptr<OVKFApi> recorded() {
    auto screen = started();
    screen->conversionDelegate = recorder_;
    return screen;
  }

  void reveal(OVKFApi& screen) {
    device_.advance(1);
    pageOf(screen).post("initLoaded", "null");
    device_.advance(1);
  }

  const std::shared_ptr<Recorder> recorder_ = std::make_shared<Recorder>();
};

TEST_F(ConversationTest, OfARootScreenTellsTheHostToTakeItAway) {
  for (const auto& leave : std::vector<std::function<void(OVKFApi&)>>{
           [](OVKFApi& screen) { pageOf(screen).post("goBack", "{}"); }, [](OVKFApi& screen) { screen.close(); }}) {
    const auto screen = recorded();
    second_->setRootViewController(screen);
    EXPECT_EQ(screen->previousViewSnapshot(), nullptr);
    EXPECT_TRUE(screen->view()->gestures().empty()) << "a swipe would lead to nothing";
    reveal(*screen);
    leave(*screen);
    EXPECT_EQ(recorder_->take(), (Lines{"opened", "revealed"})) << "the host may end it in that very call";
    device_.runUntilIdle();
    screen->close();
    device_.runUntilIdle();
    EXPECT_TRUE(screen->isViewInWindow());
    EXPECT_EQ(recorder_->take(), (Lines{"closed"}));
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"opened"})) << "a host that leaves it there could not be told again";
    leave(*screen);
    device_.runUntilIdle();
    second_->setShowing(false);
    EXPECT_FALSE(screen->view()->isShowing());
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"closed"}));
    second_->setShowing(true);
    EXPECT_EQ(recorder_->take(), (Lines{"opened"}));
    second_->setShowing(false);
    second_->setRootViewController(nullptr);
    EXPECT_EQ(recorder_->take(), (Lines{"closed"})) << "it did not show when it was taken away";
    EXPECT_EQ(screen->window(), nullptr);
  }
}

TEST_F(ConversationTest, OfAScreenThatLeavesUnseenWithWhatHoldsItIsClosed) {
  const auto shop = [] { return std::make_shared<ViewController>(); };
  for (const bool pushed : {false, true}) {
    const auto screen = recorded();
    const auto root = std::make_shared<NavigationController>(shop());
    second_->setRootViewController(root);
    if (pushed) {
      root->pushViewController(screen, false);
      root->pushViewController(shop(), false);
    } else {
      root->present(screen, false);
    }
    second_->setShowing(false);
    EXPECT_EQ(recorder_->take(), (Lines{"opened"}));
    second_->setRootViewController(nullptr);
    EXPECT_EQ(recorder_->take(), (Lines{"closed"}));
  }
}

TEST_F(ConversationTest, TellsTheHostWhenTheChatOpensAndCloses) {
  const auto another = [] { return std::make_shared<ViewController>(); };
  for (const bool animated : {false, true}) {
    auto screen = recorded();
    hostStack_->present(screen, animated);
    reveal(*screen);
    screen->present(another(), animated);
    device_.advance(1);
    screen->presentedViewController()->dismiss(animated);
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"opened", "revealed"})) << "while covered it is open";
    screen->close();
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"closed"}));
    hostStack_->present(screen, animated);
    device_.advance(1);
    hostStack_->dismiss(animated);
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"opened", "closed"})) << "opened anew";

    screen = recorded();
    hostStack_->pushViewController(screen, animated);
    device_.advance(1);
    hostStack_->pushViewController(another(), animated);
    device_.advance(1);
    hostStack_->popViewController(animated);
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"opened"}));
    hostStack_->popViewController(animated);
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"closed"}));

    screen = recorded();
    hostStack_->present(std::make_shared<NavigationController>(screen), animated);
    device_.advance(1);
    hostStack_->dismiss(animated);
    device_.advance(1);
    EXPECT_EQ(recorder_->take(), (Lines{"opened", "closed"})) << "with the stack around it";
  }
  auto screen = recorded();
  hostStack_->present(screen, false);
  device_.application().window()->setRootViewController(another());
  device_.advance(1);
  EXPECT_EQ(recorder_->take(), (Lines{"opened", "closed"})) << "with what it lay over";
  device_.application().window()->rootViewController()->present(screen, false);
  screen = nullptr;
  device_.application().window()->setRootViewController(nullptr);
  EXPECT_EQ(recorder_->take(), (Lines{"opened", "closed"})) << "with its window";
}

TEST_F(ConversationTest, TellsTheHostWhyNoPageCame) {
  using Cause = ChatFailure::Cause;
  const auto fine = VirtualReply::respond(200);
  const struct {
    const char* what;
    VirtualReply reply;
    std::function<void(VirtualWebEngine&)> act;
    Cause cause;
    int status;
    double seconds;
    const char* reason;
  } cases[] = {
      {"refused", VirtualReply::respond(403, 0.5), nullptr, Cause::refused, 403, 0.5, "the server refused, status 403"},
      {"silent", VirtualReply::never(), nullptr, Cause::timedOut, 0, 5, "no answer in time"},
      {"unreachable", VirtualReply::fail("拒绝连接", 0.5), nullptr, Cause::unreachable, 0, 0.5, "no answer"},
      {"page unreachable", fine, [](auto& page) { page.failProvisional("no route"); }, Cause::unreachable, 0, 1,
       "no answer, no route"},
      {"page slow", fine, [](auto& page) { page.startProvisional(); }, Cause::timedOut, 0, 11, "no answer in time"},
      {"led to http", fine,
       [](auto& page) {
         page.startProvisional();
         page.redirect("http://chat.example/");
       },
       Cause::insecure, 0, 1, "it was led from https to http"},
      {"process lost", fine,
       [this](auto& page) {
         for (int death = 0; death < 4; ++death) {
           page.completeLoad();
           page.die();
           device_.runUntilIdle();
         }
       },
       Cause::pageLost, 0, 1, "the page lost its process too often"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    device_.httpClient().setServer([&row](const UrlRequest&) { return row.reply; });
    const auto screen = recorded();
    hostStack_->present(screen, false);
    device_.advance(1);
    if (row.act) row.act(pageOf(*screen));
    device_.advance(11);
    ASSERT_FALSE(recorder_->failures.empty());
    const auto& failure = recorder_->failures[0];
    EXPECT_EQ(failure.cause, row.cause);
    EXPECT_EQ(failure.status, row.status);
    EXPECT_DOUBLE_EQ(failure.seconds, row.seconds);
    EXPECT_TRUE(
        log_.has("The chat at https://chat.example failed after " + doubleText(row.seconds) + " s: " + row.reason));
    recorder_->failures.clear();
    log_.take();
    hostStack_->dismiss(false);
  }
}

TEST_F(ConversationTest, TheLogOfAFailureHasNoTokenAndNoBodyBelowTheMostVerboseLevel) {
  device_.httpClient().setServer([](const UrlRequest&) { return VirtualReply::respond(200); });
  const auto linesOf = [this](log::Level level) {
    log::setLevel(level);
    log_.take();
    const auto screen = recorded();
    screen->startSession("https://chat.example", "entry", "a-secret-key", std::make_shared<UserMappingModel>());
    hostStack_->present(screen, false);
    device_.advance(1);
    pageOf(*screen).startProvisional();
    pageOf(*screen).post("trackEvent", R"({"name":"a secret","attributes":{}})");
    pageOf(*screen).failProvisional("no route to " + OVKFApiManager::shared().instanceURL->absoluteString());
    device_.advance(1);
    hostStack_->dismiss(false);
    return log_.take();
  };
  const auto failures = linesOf(log::Level::warning);
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_TRUE(failures[0].starts_with("The chat at https://chat.example failed after 1.0 s: no answer, no route to "));
  auto lines = linesOf(log::Level::debug);
  lines.push_back(failures[0]);
  for (const auto& line : lines) EXPECT_EQ(line.find("secret"), std::string::npos) << line;
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "\"Received message from JavaScript: trackEvent\""), 1);
}

TEST_F(ConversationTest, ServesWhatThePageTellsOfTheConversationOnlyWhereTheHostWantsIt) {
  const auto posted = [](OVKFApi& screen) { return pageOf(screen).configuration().scriptMessageNames; };
  EXPECT_EQ(posted(*present()).size(), 9U);
  hostStack_->dismiss(false);

  const auto screen = recorded();
  screen->conversationEvents = true;
  hostStack_->present(screen, false);
  reveal(*screen);
  ASSERT_EQ(posted(*screen).size(), 12U);
  recorder_->take();
  auto& page = pageOf(*screen);
  page.commit("https://chat.example/");
  page.post("shortCut", R"({"title":"订单","shortcutType":1})");
  page.post("message", R"({"mId":7,"messageBody":{"content":"您好"}})");
  page.post("unreadCount", "3");
  device_.runUntilIdle();
  EXPECT_EQ(recorder_->take(), (Lines{"short cut 订单", "message 您好", "unread 3"}));
  for (const auto* body : {"-1", "1.5", "\"3\"", "null", "", "99999999999999999999"}) page.post("unreadCount", body);
  page.post("shortCut", R"({"title":1})");
  page.post("message", R"({"mId":"7"})");
  page.post("message", "[]");
  device_.runUntilIdle();
  EXPECT_EQ(recorder_->take(), Lines{});
  EXPECT_TRUE(log_.has("Error decoding ShortcutsModel: title: expected a string, found a number"));
}

TEST_F(ConversationTest, HandsTheHostsMessagesToThePageInOrderOnceItCanTakeThem) {
  bool hasFunction = false;
  Lines taken;
  device_.webEngines().setScriptRunner([&](VirtualWebEngine&, const std::string& script) -> std::optional<std::string> {
    if (script.find("handleHostMessage") == std::string::npos) return std::nullopt;
    if (!hasFunction) return "no function";
    const auto start = script.find("Message({") + 8;
    taken.push_back(script.substr(start, script.find(");", start) - start));
    return std::nullopt;
  });
  const auto screen = present();
  const auto send = [&](std::int64_t type, const char* title) {
    auto body = std::make_shared<MessageBody>();
    body->title = title;
    screen->showMessage(type, body);
  };
  send(1, "早");
  reveal(*screen);
  send(2, "a</script>");
  device_.advance(60);
  EXPECT_EQ(taken, Lines{});
  hasFunction = true;
  device_.advance(10);
  send(3, "late");
  device_.advance(1);
  EXPECT_EQ(taken, (Lines{R"({"msgType":1,"title":"早"})", R"({"msgType":2,"title":"a</script>"})",
                          R"({"msgType":3,"title":"late"})"}));
}

TEST_F(ConversationTest, ForgetsTheVisitorAndSaysWhetherItCould) {
  auto& store = device_.websiteDataStore();
  store.put("chat.example");
  OVKFApi().sendMessage(1, std::make_shared<MessageBody>());
  OVKFApiManager::shared().guestId = "guest";
  std::vector<std::optional<std::string>> told;
  const auto tell = [&](const auto& error) { told.push_back(error); };
  OVKFApi::signOut(tell);
  EXPECT_TRUE(told.empty());
  device_.advance(1);
  EXPECT_TRUE(store.sites().empty());
  EXPECT_TRUE(OVKFApiManager::shared().elements.empty());
  EXPECT_EQ(OVKFApiManager::shared().guestId, std::nullopt);
  store.breakDown({"disk full"});
  OVKFApi::signOut(tell);
  OVKFApi::signOut();
  device_.advance(1);
  EXPECT_EQ(told, (std::vector<std::optional<std::string>>{std::nullopt, "disk full"}));
  EXPECT_EQ(overlayStory(), Lines{});
}

}  // namespace
}  // namespace orivex::testing

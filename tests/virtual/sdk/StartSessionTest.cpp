#include <limits>

#include "ChatScreenTest.h"

#include "orivex/media/ChatManager.h"
#include "orivex/models/MessageBody.h"
#include "orivex/session/OVKFApiManager.h"

namespace orivex::testing {
namespace {

class StartSessionTest : public ChatScreenTest {
 protected:
  StartSessionTest() {
    device_.application().setStatusBarHeight(20);
    device_.application().window()->setSafeAreaInsets({});
  }

  static std::optional<std::string> address() {
    const auto& url = ChatManager::shared().instanceURL;
    return url ? std::optional(url->absoluteString()) : std::nullopt;
  }

  static std::string objectValue() {
    const auto text = address().value_or("&object_value=absent");
    return text.substr(text.find("&object_value=") + 14);
  }

  static std::shared_ptr<MessageBody> body(const std::string& content) {
    auto made = std::make_shared<MessageBody>();
    made->content = content;
    return made;
  }

  const std::shared_ptr<OVKFApi> screen_ = std::make_shared<OVKFApi>();
  const std::shared_ptr<UserMappingModel> user_ = std::make_shared<UserMappingModel>();
};

TEST_F(StartSessionTest, KeepsTheOrderOfItsSteps) {
  screen_->startSession("https://first.example", "e0", "k0", std::make_shared<UserMappingModel>());
  const auto firstAddress = address();
  const auto firstSnapshot = screen_->previousViewSnapshot();
  screen_->sendMessage(3, body("hello"));
  log_.take();

  auto& store = OVKFApiManager::shared();
  int calls = 0;
  // All but the payload goes in as it is: separators change the query, and nothing is encoded twice.
  user_->identity_id = "u1&admin=1";
  user_->app_name = "%E5%BA%97";
  user_->app_id = "1";
  user_->env_name = "test";
  user_->visitor_name = user_->phone = user_->email = "no business of the page";
  screen_->startSession("https://chat.example", "E&x=1", "a=b&c", user_, [&] {
    ++calls;
    EXPECT_EQ(user_->deviceId, virtualDeviceId);
    EXPECT_EQ(store.user, user_);
    EXPECT_EQ(store.host, "https://chat.example");
    EXPECT_EQ(store.entryId, "E&x=1");
    EXPECT_EQ(store.appKey, "a=b&c");
    EXPECT_EQ(screen_->previousViewSnapshot(), firstSnapshot);
    EXPECT_EQ(store.elements.size(), 1U);
    EXPECT_EQ(address(), firstAddress);
    EXPECT_EQ(log_.take(), Lines{});
  });

  EXPECT_EQ(calls, 1);
  EXPECT_NE(screen_->previousViewSnapshot(), firstSnapshot);
  EXPECT_TRUE(store.elements.empty());
  const std::string expected = std::string("https://chat.example/api/oauth2/ciphertext/app/client_chat") +
                               "?access_token=a=b&c&x-entry=E&x=1&identity_id=u1&admin=1&deviceId=" + virtualDeviceId +
                               "&app_id=1&app_name=%E5%BA%97&env_name=test&hh=20.0&bh=0.0" +
                               "&object_value=%7B%22msgType%22:3,%22content%22:%22hello%22%7D";
  EXPECT_EQ(address(), expected);
  EXPECT_EQ(log_.take(), Lines{'"' + expected + '"'});
  EXPECT_FALSE(screen_->isViewLoaded());
  EXPECT_TRUE(device_.httpClient().requests().empty());
}

TEST_F(StartSessionTest, CompletesOnlyAMissingDeviceIdentifier) {
  const std::pair<std::optional<std::string>, std::string> cases[] = {
      {std::nullopt, virtualDeviceId}, {"", virtualDeviceId}, {"abc", "abc"}, {" ", " "}};
  for (const auto& [given, expected] : cases) {
    user_->deviceId = given;
    screen_->startSession("https://chat.example", "", "", user_);
    EXPECT_EQ(user_->deviceId, expected);
  }
}

TEST_F(StartSessionTest, NeverShowsTheAddressOfAnotherSessionInPlaceOfItsOwn) {
  const struct {
    const char* host;
    const char* key;
    const char* entry;
    const char* name;
    const char* fault;
  } rows[] = {
      {"https://chat example", "K", "E", "n", "host \"https://chat example\""},
      {"https://chat.example", "K\n", "E", "n", "the application key"},
      {"https://chat.example", "K", "E\t", "n", "\"x-entry=E\\t\""},
      {"https://chat.example", "K", "E", "n\xFF", "\"app_name=n\uFFFD\""},
  };
  for (const bool isFirst : {true, false}) {
    for (const auto& row : rows) {
      SCOPED_TRACE(row.fault);
      ChatManager::shared().instanceURL.reset();
      if (!isFirst) std::make_shared<OVKFApi>()->startSession("https://chat.example", "other", "secret", user_);
      const auto screen = std::make_shared<OVKFApi>();
      user_->app_name = row.name;
      log_.take();
      bool completed = false;
      screen->startSession(row.host, row.entry, row.key, user_, [&] { completed = true; });
      EXPECT_TRUE(completed);
      EXPECT_EQ(log_.take("The chat page"), Lines{std::string("The chat page address does not parse: ") + row.fault});
      hostStack_->present(screen, false);
      device_.advance(1);
      const auto& shown = device_.progressOverlay().shown();
      EXPECT_EQ(shown ? shown->status : "", "请求失败,请稍后重试");
      device_.advance(10);
      EXPECT_EQ(screen->presentingViewController(), nullptr) << "an endless placeholder";
      EXPECT_TRUE(device_.httpClient().requests().empty());
      user_->app_name = "My \"Shop\" [50%]";
      screen->startSession("https://chat.example", "E", "K", user_);
      EXPECT_NE(address().value_or("").find("&app_name=My%20%22Shop%22%20%5B50%25%5D&"), std::string::npos);
    }
  }
}

TEST_F(StartSessionTest, SendsTheLastQueuedBodyAndEmptiesTheQueue) {
  const auto own = body("before");
  screen_->sendMessage(5, own);
  EXPECT_EQ(own->msgType, 5);
  own->content = "after";
  screen_->startSession("https://chat.example", "E", "K", user_);
  EXPECT_EQ(objectValue(), "%7B%22msgType%22:5,%22content%22:%22after%22%7D") << "the host's own body, as it is now";

  auto unencodable = body("never");
  unencodable->duration = std::numeric_limits<double>::infinity();
  auto overwritten = body("b");
  overwritten->msgType = 1;
  const struct {
    const char* what;
    std::vector<std::pair<std::int64_t, std::shared_ptr<MessageBody>>> queued;
    std::string expected;
  } cases[] = {
      {"nothing queued", {}, ""},
      {"the last of two", {{1, body("a")}, {3, overwritten}}, "%7B%22msgType%22:3,%22content%22:%22b%22%7D"},
      {"the last cannot be encoded", {{1, body("a")}, {2, unencodable}}, ""},
      {"an earlier one cannot be encoded",
       {{2, unencodable}, {1, body("a")}},
       "%7B%22msgType%22:1,%22content%22:%22a%22%7D"},
      {"not UTF-8", {{1, body("\xC3")}}, ""},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    for (const auto& [type, message] : row.queued) screen_->sendMessage(type, message);
    screen_->startSession("https://chat.example", "E", "K", user_);
    EXPECT_EQ(objectValue(), row.expected);
    EXPECT_TRUE(OVKFApiManager::shared().elements.empty());
    screen_->startSession("https://chat.example", "E", "K", user_);
    EXPECT_EQ(objectValue(), "");
  }
}

TEST_F(StartSessionTest, TellsThePageTheMarginsOfTheCurrentWindow) {
  auto& application = device_.application();
  const struct {
    const char* what;
    double statusBar;
    double bottom;
    bool scene;
    bool window;
    std::string expected;
  } cases[] = {
      {"a phone", 47, 34, true, true, "&hh=47.0&bh=34.0&"},
      {"shortest text that reads back", 0.1, 1.0 / 3, true, true, "&hh=0.1&bh=0.3333333333333333&"},
      {"no status bar", 0, 34, true, true, "&hh=0.0&bh=34.0&"},
      {"no window", 47, 34, true, false, "&hh=0.0&bh=0.0&"},
      {"no scene", 47, 34, false, true, "&hh=0.0&bh=0.0&"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    application.setStatusBarHeight(row.statusBar);
    application.window()->setSafeAreaInsets({.top = 47, .left = 0, .bottom = row.bottom, .right = 0});
    application.setSceneConnected(row.scene);
    application.setWindowShown(row.window);
    screen_->startSession("https://chat.example", "E", "K", user_);
    EXPECT_NE(address().value_or("").find(row.expected), std::string::npos) << address().value_or("none");
  }
}

TEST_F(StartSessionTest, TakesAPictureOfWhatShowsOrKeepsTheEarlierOne) {
  auto& application = device_.application();
  const auto start = [&] { screen_->startSession("https://chat.example", "E", "K", user_); };
  application.setDrawn(false);
  start();
  EXPECT_EQ(screen_->previousViewSnapshot(), nullptr);

  application.setDrawn(true);
  hostStack_->view()->setFrame({0, 30, 390, 814});
  start();
  const auto kept = std::dynamic_pointer_cast<VirtualSnapshot>(screen_->previousViewSnapshot());
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->original(), hostStack_->view());
  EXPECT_EQ(kept->frame(), (Rect{0, 0, 390, 814}));

  const std::pair<const char*, std::function<void()>> losses[] = {
      {"nothing drawn", [&] { application.setDrawn(false); }},
      {"no window", [&] { application.setWindowShown(false); }},
      {"no scene", [&] { application.setSceneConnected(false); }},
      {"no root", [&] {
         application.setDrawn(true);
         application.setSceneConnected(true);
         application.setWindowShown(true);
         application.window()->setRootViewController(nullptr);
       }}};
  for (const auto& [what, lose] : losses) {
    lose();
    start();
    EXPECT_EQ(screen_->previousViewSnapshot(), kept) << what;
  }
  application.window()->setRootViewController(hostScreen_);
  start();
  EXPECT_NE(screen_->previousViewSnapshot(), kept);
  const auto root = std::make_shared<ViewController>();
  const auto over = std::make_shared<ViewController>();
  application.window()->setRootViewController(root);
  root->present(over, false);
  start();
  EXPECT_EQ(std::dynamic_pointer_cast<VirtualSnapshot>(screen_->previousViewSnapshot())->original(), over->view())
      << "what showed is the screen over the root";
}

TEST_F(StartSessionTest, StopsTheProcessWithoutAUserOrABody) {
  EXPECT_DEATH(screen_->startSession("https://chat.example", "E", "K", nullptr), "startSession needs a user");
  EXPECT_DEATH(screen_->sendMessage(1, nullptr), "sendMessage needs a message body");
}

}  // namespace
}  // namespace orivex::testing

#include "ChatScreenTest.h"

#include "orivex/session/OVKFApiManager.h"

namespace orivex::testing {
namespace {

class Delegate : public OVKFApiConversationDelegate {
 public:
  void trackEvent(const std::string& name, const std::map<std::string, std::string>& attributes) override {
    events.emplace_back(name, attributes);
  }
  std::vector<std::pair<std::string, std::map<std::string, std::string>>> events;
};

class BridgeTest : public ChatScreenTest {
 protected:
  BridgeTest() {
    screen_->conversionDelegate = delegate_;
    device_.runUntilIdle();
    log_.take();
  }

  /// Lets the page post a message and returns what was logged, without the first line, which names the message.
  Lines post(const std::string& name, const std::string& body) {
    pageOf(*screen_).post(name, body);
    device_.runUntilIdle();
    auto lines = log_.take();
    if (!lines.empty()) lines.erase(lines.begin());
    return lines;
  }

  /// Which picker is open; closes it.
  std::string closePicker() {
    std::string open;
    if (device_.camera().presented()) {
      open += "camera";
      device_.camera().finish(CaptureCancelled{});
    }
    if (device_.photoLibrary().shown()) {
      open += "photoLibrary";
      device_.photoLibrary().close();
    }
    if (device_.documentPicker().presented()) {
      open += "documents";
      device_.documentPicker().cancel();
    }
    device_.runUntilIdle();
    log_.take();
    return open;
  }

  const std::shared_ptr<Delegate> delegate_ = std::make_shared<Delegate>();
  const std::shared_ptr<OVKFApi> screen_ = present();
};

TEST_F(BridgeTest, LogsEachMessageAndDropsUnknownNames) {
  const struct {
    const char* name;
    const char* body;
    const char* line;
  } cases[] = {
      {"unknown", "null", R"("Received message from JavaScript: unknown null")"},
      {"OpenUrl", R"("https://a.example")", R"("Received message from JavaScript: OpenUrl https://a.example")"},
      {"openUrl ", R"("https://a.example")", R"("Received message from JavaScript: openUrl  https://a.example")"},
      {"", "{}", R"("Received message from JavaScript:  {}")"},
      {"initloaded", "[1,\"a\\n\"]", R"("Received message from JavaScript: initloaded [1,\"a\\n\"]")"},
  };
  for (const auto& row : cases) {
    screen_->didReceive({row.name, row.body});
    EXPECT_EQ(log_.take(), Lines{row.line});
  }
  device_.advance(1);
  EXPECT_TRUE(device_.application().openedUrls().empty());
  EXPECT_FALSE(screen_->isLoaded());
  EXPECT_TRUE(screen_->isViewInWindow());
}

TEST_F(BridgeTest, RaisesTrackEventsThatAreComplete) {
  const struct {
    std::string body;
    const char* line;  // of one that is not raised
  } cases[] = {
      {R"({"name":"x","attributes":{"a":"1","b":""}})", nullptr},
      {R"({"attributes":{"a":"1","b":""},"name":"x","more":[{}]})", nullptr},
      {R"({"name":"x"})", "dropped: trackEvent wants a name and attributes"},
      {R"({"name":"x","attributes":null})", "dropped: trackEvent wants a name and attributes"},
      {R"({"attributes":{"a":"1"}})", "dropped: trackEvent wants a name and attributes"},
      {R"({})", "dropped: trackEvent wants a name and attributes"},
      {R"({"name":"x","attributes":{"a":1}})", "Error decoding TrackModel: "},
      {R"({"name":"x","attributes":{"a":null}})", "Error decoding TrackModel: "},
      {R"({"name":"x","attributes":[]})", "Error decoding TrackModel: "},
      {R"({"name":1,"attributes":{}})", "Error decoding TrackModel: "},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.body);
    delegate_->events.clear();
    const auto lines = post("trackEvent", row.body);
    ASSERT_EQ(lines.size(), row.line ? 1U : 0U);
    if (row.line) {
      EXPECT_TRUE(lines[0].starts_with(row.line)) << lines[0];
    }
    ASSERT_EQ(delegate_->events.size(), row.line ? 0U : 1U);
    if (row.line) continue;
    EXPECT_EQ(delegate_->events[0].first, "x");
    EXPECT_EQ(delegate_->events[0].second, (std::map<std::string, std::string>{{"a", "1"}, {"b", ""}}));
  }
  screen_->conversionDelegate = nullptr;
  EXPECT_EQ(post("trackEvent", cases[0].body), Lines{});
}

TEST_F(BridgeTest, StoresTheLimitsThatARequestBrings) {
  using Optional = std::optional<std::int64_t>;
  constexpr std::int64_t fileBefore = 11;
  constexpr std::int64_t videoBefore = 22;
  const struct {
    const char* name;
    const char* picker;
    std::string body;
    std::string guest;
    Optional fileSize;
    Optional videoSize;
  } cases[] = {
      {"openCamera", "camera", R"({"deviceId":"d","fileSize":1})", "d", {}, 1},
      {"openCamera", "camera", R"({"deviceId":"d"})", "d", {}, 52428800},
      {"openPhotoLibraryPicker", "photoLibrary", R"({"deviceId":"","fileSize":null})", "", {}, 52428800},
      {"openDocumentPicker", "documents", R"({"deviceId":"d","fileSize":0})", "d", 0, {}},
      {"openDocumentPicker", "documents", R"({"deviceId":"d","action":"start"})", "d", 31457280, {}},
      {"recording", "", R"({"deviceId":"r","fileSize":5,"action":"cancel"})", "r", {}, {}},
  };
  auto& store = OVKFApiManager::shared();
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name + row.body);
    store.guestId = "before";
    store.fileSize = fileBefore;
    store.videoSize = videoBefore;
    EXPECT_EQ(post(row.name, row.body), Lines{});
    EXPECT_EQ(store.guestId, row.guest);
    EXPECT_EQ(store.fileSize, row.fileSize.value_or(fileBefore));
    EXPECT_EQ(store.videoSize, row.videoSize.value_or(videoBefore));
    EXPECT_EQ(closePicker(), row.picker);
  }
}

TEST_F(BridgeTest, LeavesEverythingAsItWasAfterABadBody) {
  auto& store = OVKFApiManager::shared();
  store.guestId = "before";
  store.fileSize = 11;
  store.videoSize = 22;
  const auto requests = {"openCamera", "openPhotoLibraryPicker", "openDocumentPicker", "recording"};
  for (const auto* name : requests) {
    for (const auto* body : {"{}", R"({"deviceId":null})", R"({"DeviceId":"d"})", R"({"deviceId":"d","fileSize":1.5})",
                             R"({"deviceId":"d","mimeTypes":[1]})", R"({"deviceId":"d","action":1})"}) {
      const auto lines = post(name, body);
      ASSERT_EQ(lines.size(), 1U) << name << body;
      EXPECT_TRUE(lines[0].starts_with("Error decoding PostMessageModel: ")) << lines[0];
    }
  }
  const struct {
    const char* body;
    const char* kind;
  } others[] = {{"null", "null"},
                {"true", "a boolean"},
                {"5", "a number"},
                {"[]", "an array"},
                {R"([{"deviceId":"d"}])", "an array"}};
  const auto dropped = [](const std::string& name, const std::string& wanted, const std::string& got) {
    return Lines{"dropped: " + name + " wants " + wanted + ", got " + got};
  };
  for (const auto& [body, kind] : others) {
    for (const auto* name : requests) EXPECT_EQ(post(name, body), dropped(name, "an object", kind));
    EXPECT_EQ(post("trackEvent", body), dropped("trackEvent", "an object", kind));
    for (const auto* name : {"openUrl", "openFile"}) EXPECT_EQ(post(name, body), dropped(name, "a string", kind));
  }
  for (const auto* name : requests) {
    EXPECT_EQ(post(name, R"("{\"deviceId\":\"d\"}")"), dropped(name, "an object", "a string"));
  }
  for (const auto* name : {"openUrl", "openFile"}) {
    EXPECT_EQ(post(name, R"({"url":"https://a.example"})"), dropped(name, "a string", "an object"));
  }
  for (const auto* noAddress : {R"("")", R"("file:///tmp/a b.pdf")"}) {
    EXPECT_EQ(post("openFile", noAddress), Lines{"dropped: openFile wants an address"});
  }
  EXPECT_EQ(post("recording", R"({"deviceId":"before","action":"Start"})"),
            Lines{"dropped: recording knows no action Start"});
  EXPECT_TRUE(device_.application().openedUrls().empty());
  EXPECT_EQ(closePicker(), "");
  EXPECT_TRUE(device_.documentInteraction().menus().empty());
  EXPECT_TRUE(device_.recordPermission().asked().empty());
  EXPECT_TRUE(delegate_->events.empty());
  EXPECT_EQ(store.guestId, "before");
  EXPECT_EQ(store.fileSize, 11);
  EXPECT_EQ(store.videoSize, 22);
}

TEST_F(BridgeTest, RefusesWhatIsTooLongBeforeAnyWork) {
  const auto event = [](std::size_t length) {
    const std::string opening = R"({"name":"n","attributes":{"a":")";
    return opening + std::string(length - opening.size() - 3, 'x') + R"("}})";
  };
  constexpr std::size_t longest = 8U << 20U;
  post("trackEvent", event(longest));
  screen_->didReceive({"trackEvent", event(longest + 1)});
  EXPECT_EQ(log_.take(), Lines{"A message of 8388609 bytes was refused: trackEvent"});
  EXPECT_EQ(delegate_->events.size(), 1U);
  post("openFile", "\"https://a.example/" + std::string(65536, 'x') + "\"");
  EXPECT_TRUE(device_.documentInteraction().menus().empty());
}

}  // namespace
}  // namespace orivex::testing

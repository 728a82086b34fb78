#include "World.h"

#include <algorithm>

#include "orivex/models/UserMappingModel.h"
#include "orivex/platform/ui/WebView.h"

namespace orivex::testing {
namespace {

class Events final : public OVKFApiConversationDelegate {
 public:
  explicit Events(World& world) : world_(world) {}

  void opened() override {
    world_.require(!isOpen_, "a chat was opened twice");
    isOpen_ = true;
  }
  void closed() override {
    world_.require(isOpen_, "a chat was closed twice");
    isOpen_ = false;
  }
  void revealed() override {
    world_.require(!isRevealed_, "a chat was revealed twice");
    isRevealed_ = true;
  }

 private:
  World& world_;
  bool isOpen_ = false;
  bool isRevealed_ = false;
};

}  // namespace

World::World() {
  device.application().window()->setRootViewController(stack);
  stack->setHostTabBar(std::make_shared<View>());
  stack->toolbar()->setHidden(false);
  device.webEngines().setLoader([this](VirtualWebEngine& page) { play(page); });
  device.webEngines().setScriptRunner([this](auto& page, const auto& script) -> std::optional<std::string> {
    evaluated(page, script);
    return scriptsFail ? std::optional<std::string>("no function") : std::nullopt;
  });
  device.httpClient().setServer([this](const UrlRequest&) {
    const VirtualReply replies[] = {VirtualReply::respond(200, 0.2), VirtualReply::respond(403),
                                    VirtualReply::fail("unreachable", 1), VirtualReply::never()};
    return replies[checks];
  });
  device.httpClient().setUploadServer([this](const UploadRequest&) { return store(); });
}

World::~World() {
  for (const auto& chat : living()) chat->conversionDelegate = nullptr;
}

void World::makeChat(std::size_t place, const std::string& entry) {
  auto& chat = chats[place] = std::make_shared<OVKFApi>();
  made_.push_back(chat);
  chat->conversionDelegate = std::make_shared<Events>(*this);
  chat->conversationEvents = true;
  int called = 0;
  chat->startSession("https://chat.example", entry, "key", std::make_shared<UserMappingModel>(), [&] { ++called; });
  require(called == 1, "startSession called back " + std::to_string(called) + " times");
}

std::vector<std::shared_ptr<OVKFApi>> World::living() const {
  std::vector<std::shared_ptr<OVKFApi>> found;
  for (const auto& weak : made_) {
    if (auto chat = weak.lock()) found.push_back(std::move(chat));
  }
  return found;
}

std::shared_ptr<OVKFApi> World::showing() const {
  for (auto& chat : living()) {
    if (chat->isViewLoaded() && chat->view()->isShowing()) return chat;
  }
  return nullptr;
}

VirtualWebEngine* World::page(unsigned choice) const {
  std::vector<VirtualWebEngine*> pages;
  for (const auto& chat : living()) {
    if (chat->isViewLoaded()) pages.push_back(&pageOf(*chat));
  }
  return pages.empty() ? nullptr : pages[choice % pages.size()];
}

VirtualWebEngine& World::pageOf(OVKFApi& chat) {
  return dynamic_cast<VirtualWebEngine&>(chat.webView()->engine());
}

std::shared_ptr<OVKFApi> World::chatOf(const VirtualWebEngine& page) const {
  for (const auto& chat : living()) {
    if (chat->isViewLoaded() && &pageOf(*chat) == &page) return chat;
  }
  return nullptr;
}

std::string World::expectAnswer(const std::string& kind) {
  auto name = kind + std::to_string(answers_.size()) + ".x";
  answers_[name].chat = showing();
  return name;
}

void World::excuseAnswers() {
  for (auto& [name, answer] : answers_) answer.isExcused = true;
}

void World::play(VirtualWebEngine& page) const {
  const bool isPlaceholder = page.requestedUrl()->starts_with("file:");
  switch (isPlaceholder ? 0 : loads) {
    case 0:
      return page.completeLoad();
    case 1:
      return page.startProvisional();  // and no more
    case 2:
      page.startProvisional();
      return page.failProvisional("unreachable");
    default:
      page.startProvisional();
      return page.redirect("http://chat.example/");
  }
}

VirtualUploadReply World::store() {
  constexpr double silence = 60;  // the idle time-out of uploads
  const auto stored = [this] {
    return R"({"url":")" + expectAnswer("upload") + R"(","inputContentType":"a","actualContentType":"b"})";
  };
  auto reply = uploads == 0   ? VirtualUploadReply::respond(200, stored(), 3, {0.2, 0.4, 0.6, 0.8, 1})
               : uploads == 1 ? VirtualUploadReply::respond(503, "busy", 1, {1})
                              : VirtualUploadReply::fail("broken", 2);
  reply.isSilent = uploads == 3;
  const double now = device.mainQueue().now();
  uploadsBegan_.insert(now);
  uploadsEnd_ = std::max(uploadsEnd_, now + reply.delay + (reply.isSilent ? silence : 0) + 0.001);  // rounded up
  return reply;
}

void World::evaluated(const VirtualWebEngine& page, const std::string& script) {
  if (!script.starts_with("handleSelected")) return;
  require(!page.documentUrl() || page.documentUrl()->starts_with("https://chat.example/"),
          "an answer reached another's page");
  for (auto& [name, answer] : answers_) answer.given += script.find(name) != std::string::npos ? 1 : 0;
}

}  // namespace orivex::testing

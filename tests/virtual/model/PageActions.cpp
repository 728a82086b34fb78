#include "Action.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::testing {
namespace {

// What a page posts is served in its turn; what that means for the press is noted right after it.
void afterwards(World& world, const VirtualWebEngine& page, void (*note)(World&, const std::shared_ptr<OVKFApi>&)) {
  world.device.mainQueue().async([&world, weak = std::weak_ptr(world.chatOf(page)), note] {
    if (const auto chat = weak.lock()) note(world, chat);
  });
}

std::string post(World& world, VirtualWebEngine& page, const std::string& name, const std::string& body) {
  if (!page.documentUrl()) return {};
  if (name == "goBack") {
    ++world.disturbances;
    world.maySay = true;  // the chat may come up for the moment in which it leaves
  }
  page.post(name, body);
  return "page posts " + name + " " + body;
}

std::string postGood(World& world, Choice choice) {
  static const struct {
    const char* name;
    const char* body;
  } messages[] = {
      {"openPhotoLibraryPicker", R"({"deviceId":"d"})"},
      {"openCamera", R"({"deviceId":"d"})"},
      {"openDocumentPicker", R"({"deviceId":"d","fileSize":5000})"},
      {"initLoaded", "null"},
      {"trackEvent", R"({"name":"n","attributes":{}})"},
      {"openUrl", R"("https://shop.example")"},
      {"openFile", R"("file:///tmp/a.pdf")"},
      {"shortCut", "{}"},
      {"message", "{}"},
      {"unreadCount", "3"},
      {"goBack", "{}"},
  };
  auto* const page = world.page(choice.below(4));
  if (!page) return {};
  const auto& message = choice.of(messages);
  return post(world, *page, message.name, message.body);
}

std::string postBad(World& world, Choice choice) {
  static const char* const bodies[] = {"null", "3", "[]", "{}", R"("")", R"({"deviceId":3})", "{", R"({"action":"x"})"};
  auto* const page = world.page(choice.below(4));
  if (!page) return {};
  const auto& names = page->configuration().scriptMessageNames;
  const auto& name = names[choice.below(static_cast<unsigned>(names.size()))];
  return post(world, *page, name, choice.of(bodies));
}

std::string talk(World& world, Choice choice) {
  static const char* const actions[] = {"start", "end", "start", "cancel", "hold", "recover"};
  auto* const page = world.page(choice.below(4));
  if (!page) return {};
  const std::string action = choice.of(actions);
  auto said = post(world, *page, "recording", R"({"deviceId":"d","action":")" + action + R"("})");
  if (said.empty()) return {};
  if (action == "start") {
    afterwards(world, *page, [](World& now, const auto& chat) {
      if (chat->view()->isShowing()) now.talker = chat;
    });
  } else if (action == "end" || action == "cancel") {
    afterwards(world, *page, [](World& now, const auto& chat) {
      const auto url = dynamic_cast<VirtualWebEngine&>(chat->webView()->engine()).documentUrl();
      if (chat->view()->isShowing() && url && url->starts_with("https://chat.example/")) now.talker.reset();
    });
  }
  return said;
}

void endPress(World& world, const std::shared_ptr<OVKFApi>& chat) {
  if (world.talker.lock() == chat) world.talker.reset();
}

std::string die(World& world, Choice choice) {
  auto* const page = world.page(choice.below(4));
  if (!page) return {};
  ++world.disturbances;
  page->die();
  afterwards(world, *page, endPress);
  return "page dies";
}

std::string go(World& world, Choice choice) {
  auto* const page = world.page(choice.below(4));
  if (!page || !page->isProcessAlive() || !page->requestedUrl()) return {};
  const auto* const address = choice.below(2) == 0 ? "https://other.example/" : "https://chat.example/again";
  ++world.disturbances;
  page->startProvisional();
  page->commit(address);
  page->finish();
  afterwards(world, *page, endPress);
  return std::string("page goes to ") + address;
}

std::string ask(World& world, Choice choice) {
  auto* const page = world.page(choice.below(4));
  if (!page) return {};
  switch (choice.below(5)) {
    case 0:
      page->openWindow("https://shop.example");
      return "page opens a window";
    case 1:
      page->requestFiles({{}, true});
      return "page's file input is pressed";
    case 2:
      page->endDownload({"a.pdf", choice.below(2) == 0});
      return "page's download ends";
    case 3:
      page->changeUrl("https://chat.example/#topic");
      return "page changes its address";
    default:
      ++world.disturbances;
      page->leave();
      return "visitor leaves the page that hangs";
  }
}

std::string fail(World& world, Choice /*choice*/) {
  world.scriptsFail = !world.scriptsFail;
  return world.scriptsFail ? "scripts fail from now on" : "scripts run again";
}

}  // namespace

std::vector<Action> pageActions() {
  return {{20, postGood}, {4, postBad}, {16, talk}, {4, die}, {3, go}, {4, ask}, {1, fail}};
}

}  // namespace orivex::testing

#include "Action.h"

#include "orivex/platform/ui/WebView.h"

namespace orivex::testing {
namespace {

/// Something that one of the chat pages does.
Action onPage(unsigned weight, const char* name,
              std::function<bool(World&, VirtualWebEngine& page, Choice, std::string& detail)> act) {
  return {weight, name, [act = std::move(act)](World& world, Choice choice, std::string& detail) {
            auto* const page = world.page(choice.below(4));
            return page && act(world, *page, choice, detail);
          }};
}

// What a page does is served in its turn; what that means for the press is noted right after it.
void afterwards(World& world, const VirtualWebEngine& page, void (*note)(World&, const std::shared_ptr<OVKFApi>&)) {
  world.device.mainQueue().async([&world, weak = std::weak_ptr(world.chatOf(page)), note] {
    if (const auto chat = weak.lock()) note(world, chat);
  });
}

bool post(World& world, VirtualWebEngine& page, std::string name, const std::string& body, std::string& detail) {
  if (!page.documentUrl()) return false;
  page.post(name, body);
  if (name == "goBack") world.maySay = true;  // the chat may come up for the moment in which it leaves
  detail = std::move(name) + " " + body;
  return true;
}

bool postGood(World& world, VirtualWebEngine& page, Choice choice, std::string& detail) {
  static const std::pair<const char*, const char*> messages[] = {
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
  const auto& [name, body] = choice.of(messages);
  return post(world, page, name, body, detail);
}

bool postBad(World& world, VirtualWebEngine& page, Choice choice, std::string& detail) {
  static const char* const bodies[] = {"null", "3", "[]", "{}", R"("")", R"({"deviceId":3})", "{", R"({"action":"x"})"};
  const auto& names = page.configuration().scriptMessageNames;
  return post(world, page, names[choice.below(static_cast<unsigned>(names.size()))], choice.of(bodies), detail);
}

bool talk(World& world, VirtualWebEngine& page, Choice choice, std::string& detail) {
  static const char* const actions[] = {"start", "end", "start", "cancel", "hold", "recover"};
  const std::string action = choice.of(actions);
  if (!post(world, page, "recording", R"({"deviceId":"d","action":")" + action + R"("})", detail)) return false;
  if (action == "start") {
    afterwards(world, page, [](World& now, const auto& chat) {
      if (chat->view()->isShowing()) now.talker = chat;
    });
  } else if (action == "end" || action == "cancel") {
    afterwards(world, page, [](World& now, const auto& chat) {
      const auto url = chat->webView()->engine().documentUrl();
      if (chat->view()->isShowing() && url->starts_with("https://chat.example/")) now.talker.reset();
    });
  }
  return true;
}

void endPress(World& world, const std::shared_ptr<OVKFApi>& chat) {
  if (world.talker.lock() == chat) world.talker.reset();
}

bool die(World& world, VirtualWebEngine& page, Choice /*choice*/, std::string& /*detail*/) {
  page.die();
  afterwards(world, page, endPress);
  return true;
}

bool go(World& world, VirtualWebEngine& page, Choice choice, std::string& detail) {
  if (!page.isProcessAlive() || !page.requestedUrl()) return false;
  detail = choice.below(2) == 0 ? "https://other.example/" : "https://chat.example/again";
  page.startProvisional();
  page.commit(detail);
  page.finish();
  afterwards(world, page, endPress);
  return true;
}

/// Something that does not depend on more choices.
Action plain(unsigned weight, const char* name, void (*act)(VirtualWebEngine& page)) {
  return onPage(weight, name, [act](World&, VirtualWebEngine& page, Choice, std::string&) {
    act(page);
    return true;
  });
}

}  // namespace

std::vector<Action> pageActions() {
  return {
      onPage(24, "page posts", postGood),
      onPage(4, "page posts", postBad),
      onPage(20, "page posts", talk),
      onPage(3, "page dies", die),
      onPage(3, "page goes to", go),
      plain(1, "page opens a window", [](auto& page) { page.openWindow("https://shop.example"); }),
      plain(1, "visitor presses a file input",
            [](auto& page) {
              page.requestFiles({{}, true});
            }),
      plain(2, "download ends",
            [](auto& page) {
              page.endDownload({"a.pdf", true});
            }),
      plain(1, "download fails",
            [](auto& page) {
              page.endDownload({"a.pdf", false});
            }),
      plain(1, "page changes its address", [](auto& page) { page.changeUrl("https://chat.example/#topic"); }),
      plain(1, "visitor leaves the page that hangs", [](auto& page) { page.leave(); }),
  };
}

}  // namespace orivex::testing

#include "Action.h"

#include "orivex/models/MessageBody.h"
#include "orivex/models/UserMappingModel.h"

namespace orivex::testing {
namespace {

bool open(World& world, Choice choice, std::string& detail) {
  const auto place = choice.below(2);
  const bool isPushed = choice.below(2) == 1;
  const bool isAnimated = choice.below(2) == 1;
  const bool isBad = choice.below(16) == 15;
  auto& chat = world.chats[place];
  detail = std::to_string(place) + (isPushed ? ", pushed" : "") + (isAnimated ? ", animated" : "") +
           (isBad && !chat ? ", without an address" : "");
  world.maySay = true;
  if (!chat) world.makeChat(place, isBad ? "no address" : "entry");
  if (isPushed) {
    world.stack->pushViewController(chat, isAnimated);
  } else {
    world.stack->present(chat, isAnimated);
  }
  return true;
}

/// Something done with a chat that the host keeps.
Action withChat(unsigned weight, const char* name, void (*act)(World&, std::shared_ptr<OVKFApi>&)) {
  return {weight, name, [act](World& world, Choice choice, std::string& detail) {
            const auto place = choice.below(2);
            detail = std::to_string(place);
            if (world.chats[place]) act(world, world.chats[place]);
            return true;
          }};
}

/// Something done with the host's own window and screens.
Action withWindow(unsigned weight, const char* name, void (*act)(World&, Window&, bool isAnimated)) {
  return {weight, name, [act](World& world, Choice choice, std::string& /*detail*/) {
            act(world, *world.device.application().window(), choice.below(2) == 0);
            return true;
          }};
}

}  // namespace

std::vector<Action> hostActions() {
  return {
      {20, "host shows chat", open},
      withChat(3, "host lets go of", [](World&, auto& chat) { chat = nullptr; }),
      withChat(1, "host closes", [](World&, auto& chat) { chat->close(); }),
      withChat(2, "showMessage of", [](World&, auto& chat) { chat->showMessage(1, std::make_shared<MessageBody>()); }),
      withChat(1, "sendMessage of", [](World&, auto& chat) { chat->sendMessage(1, std::make_shared<MessageBody>()); }),
      withChat(1, "startSession of",
               [](World&, auto& chat) {
                 chat->startSession("https://chat.example", "e", "k", std::make_shared<UserMappingModel>());
               }),
      withChat(1, "clearWebViewCache of",
               [](World& world, auto& chat) {
                 world.maySay = true;
                 chat->clearWebViewCache();
               }),
      withWindow(2, "host dismisses", [](World& world, Window&, bool isAnimated) { world.stack->dismiss(isAnimated); }),
      withWindow(2, "host pops",
                 [](World& world, Window&, bool isAnimated) { world.stack->popViewController(isAnimated); }),
      withWindow(1, "window hides", [](World&, Window& window, bool) { window.setShowing(false); }),
      withWindow(1, "window shows", [](World&, Window& window, bool) { window.setShowing(true); }),
      withWindow(1, "host shows another root",
                 [](World& world, Window& window, bool) { window.setRootViewController(world.otherRoot); }),
      withWindow(2, "host shows its stack",
                 [](World& world, Window& window, bool) {
                   if (window.rootViewController() != world.stack) window.setRootViewController(world.stack);
                 }),
      withWindow(1, "host signs the visitor out",
                 [](World& world, Window&, bool) {
                   ++world.promised;
                   OVKFApi::signOut([&world](const auto&) { --world.promised; });
                 }),
  };
}

}  // namespace orivex::testing

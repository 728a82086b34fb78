#include "Action.h"

#include "orivex/models/MessageBody.h"
#include "orivex/models/UserMappingModel.h"

namespace orivex::testing {
namespace {

std::string numbered(const char* text, std::size_t place) {
  return std::string(text) + " " + std::to_string(place);
}

std::string open(World& world, Choice choice) {
  const auto place = choice.below(2);
  const bool isPushed = choice.below(2) == 1;
  const bool isAnimated = choice.below(2) == 1;
  const bool isBad = choice.below(16) == 15;
  ++world.disturbances;
  world.maySay = true;
  if (!world.chats[place]) world.makeChat(place, isBad ? "no address" : "https://chat.example");
  if (isPushed) {
    world.stack->pushViewController(world.chats[place], isAnimated);
  } else {
    world.stack->present(world.chats[place], isAnimated);
  }
  return numbered(isPushed ? "host pushes" : "host presents", place) + (isAnimated ? ", animated" : "") +
         (isBad ? ", without an address" : "");
}

std::string letGo(World& world, Choice choice) {
  const auto place = choice.below(2);
  if (!world.chats[place]) return {};
  world.chats[place] = nullptr;
  return numbered("host lets go of", place);
}

std::string leave(World& world, Choice choice) {
  const auto way = choice.below(3);
  const auto place = choice.below(2);
  ++world.disturbances;
  if (way == 0) {
    world.stack->dismiss(place == 0);
    return "host dismisses";
  }
  if (way == 1) {
    world.stack->popViewController(place == 0);
    return "host pops";
  }
  if (!world.chats[place]) return {};
  world.chats[place]->close();
  return numbered("host closes", place);
}

std::string change(World& world, Choice choice) {
  const auto window = world.device.application().window();
  const auto what = choice.below(4);
  ++world.disturbances;
  if (what < 2) {
    window->setShowing(what == 1);
    return what == 1 ? "window shows" : "window hides";
  }
  if (what == 2) {
    window->setRootViewController(world.otherRoot);
    return "host shows another root";
  }
  if (window->rootViewController() != world.stack) window->setRootViewController(world.stack);
  return "host shows its stack";
}

std::string say(World& world, Choice choice) {
  const auto place = choice.below(2);
  const auto what = choice.below(4);
  const auto& chat = world.chats[place];
  if (!chat) return {};
  const auto body = std::make_shared<MessageBody>();
  if (what == 0) chat->showMessage(1, body);
  if (what == 1) chat->sendMessage(1, body);
  if (what == 2) chat->startSession("https://chat.example", "e", "k", std::make_shared<UserMappingModel>());
  if (what == 3) {
    world.maySay = true;
    chat->clearWebViewCache();
  }
  const char* const names[] = {"showMessage of", "sendMessage of", "startSession of", "clearWebViewCache of"};
  return numbered(names[what], place);
}

std::string signOut(World& world, Choice /*choice*/) {
  ++world.promised;
  OVKFApi::signOut([&world](const auto&) { --world.promised; });
  return "host signs the visitor out";
}

}  // namespace

std::vector<Action> hostActions() {
  return {{12, open}, {3, letGo}, {5, leave}, {3, change}, {4, say}, {1, signOut}};
}

}  // namespace orivex::testing

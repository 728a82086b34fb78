// The shop's test of its support, on a device in memory: no display, no network, and no second passes.
#include "Support.h"

#include <cstdlib>
#include <iostream>

#include <orivex/testing/VirtualDevice.h>

namespace {

void expect(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "It is not so: " << what << '\n';
  std::exit(1);
}

/// The shop and its visitor, with a server that answers the chat's check with this status.
struct Visit {
  explicit Visit(int status) {
    device.httpClient().setServer([status](const auto&) { return orivex::testing::VirtualReply::respond(status); });
    device.webEngines().setLoader([](auto& page) { page.completeLoad(); });
    device.application().window()->setRootViewController(shop);
    support->open(*shop, "No. 0611");
    device.advance(1);
  }

  orivex::testing::VirtualDevice device;
  const std::shared_ptr<orivex::ViewController> shop = std::make_shared<orivex::ViewController>();
  const std::shared_ptr<Support> support = std::make_shared<Support>("https://chat.example");
};

void theChatHearsOfTheOrder() {
  Visit visit(200);
  const auto chat = std::dynamic_pointer_cast<orivex::OVKFApi>(visit.shop->presentedViewController());
  expect(chat != nullptr, "the chat lies over the shop");
  auto& page = *visit.device.webEngines().engines().front();
  expect(page.requestedUrl()->find("No.%200611") != std::string::npos, "the page gets the order");
  page.post("initLoaded", "null");
  visit.device.advance(1);
  expect(chat->isLoaded(), "the chat shows");
  expect(!visit.support->offersPhone(), "nobody needs to phone");

  page.post("goBack", "null");
  visit.device.advance(1);
  expect(!visit.shop->presentedViewController(), "the page leads back to the shop");
}

void whoCannotChatCanPhone() {
  Visit visit(403);
  expect(visit.support->offersPhone(), "the shop offers its number");
  visit.device.advance(5);
  expect(!visit.shop->presentedViewController(), "the chat has closed");
}

}  // namespace

int main() {
  theChatHearsOfTheOrder();
  whoCannotChatCanPhone();
}

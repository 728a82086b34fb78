#pragma once

#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include <orivex/sdk/OrivexSDK.h>

/// The shop's support: a chat about an order, and the shop's own number for when there is none. It knows no toolkit, so
/// that its test needs no display.
class Support : public orivex::OVKFApiConversationDelegate, public std::enable_shared_from_this<Support> {
 public:
  explicit Support(std::string server) : server_(std::move(server)) {}

  /// Opens the chat over a screen of the shop.
  void open(orivex::ViewController& over, const std::string& order) {
    constexpr int card = 7;  // as the chat page numbers it
    const auto message = std::make_shared<orivex::MessageBody>();
    message->title = order;
    const auto chat = std::make_shared<orivex::OVKFApi>();
    chat->conversionDelegate = shared_from_this();
    chat->sendMessage(card, message);
    chat->startSession(server_, "entry", "key", std::make_shared<orivex::UserMappingModel>());
    over.present(chat, true);
  }

  bool offersPhone() const { return offersPhone_; }

  void opened() override { std::cout << "opened" << std::endl; }
  void revealed() override {
    offersPhone_ = false;
    std::cout << "revealed" << std::endl;
  }
  void failed(const orivex::ChatFailure& failure) override {
    offersPhone_ = true;
    std::cout << "failed: " << failure.message() << std::endl;
  }

 private:
  const std::string server_;
  bool offersPhone_ = false;
};

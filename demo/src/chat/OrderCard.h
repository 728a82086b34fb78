#pragma once

#include <memory>

#include "../shop/Order.h"

#include "orivex/sdk/OrivexSDK.h"

namespace orivex::demo {

/// The order as a card that a visitor brings into the chat, with its pictures inside.
std::shared_ptr<MessageBody> cardOf(const Order& order);

}  // namespace orivex::demo

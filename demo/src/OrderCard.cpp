#include "OrderCard.h"

#include "GObjects.h"
#include "Texts.h"

namespace orivex::demo {
namespace {

// Pixels of an item's picture: twice the size at which the chat page shows it. The card travels in the page's address,
// so a picture must stay small.
constexpr int thumbnailSize = 96;

// `type` of a menu whose command is sent as the visitor's answer, as the chat page numbers it.
constexpr std::int64_t commandMenu = 1;

std::string thumbnailOf(Picture picture) {
  const auto image = pngOf(picture, thumbnailSize);
  const CharPtr encoded(g_base64_encode(image.data(), image.size()));
  return std::string("data:image/png;base64,") + encoded.get();
}

MessageCustomFields field(const char* key, std::string value) {
  MessageCustomFields made;
  made.key = key;
  made.value = std::move(value);
  return made;
}

MessageCustomItems itemOf(const OrderLine& line, const std::string& currency) {
  MessageCustomItems item;
  item.customCardName = line.name;
  item.customCardDesc = line.description;
  item.customCardThumbnail = thumbnailOf(line.picture);
  item.customCardAmountSymbol = currency;
  item.customCardAmount = line.amount;
  item.customFields = {field(text("数量", "Quantity"), "× " + std::to_string(line.quantity))};
  return item;
}

MessageCustomMenus menu(const char* title, const char* command) {
  MessageCustomMenus made;
  made.type = commandMenu;
  made.title = title;
  made.command = command;
  return made;
}

}  // namespace

std::shared_ptr<MessageBody> cardOf(const Order& order) {
  auto card = std::make_shared<MessageBody>();
  card->title = text("订单 ", "Order ") + order.number;
  card->cardType = 1;
  card->cardDesc = order.arrival;
  card->customFields = {field(text("状态", "Status"), order.status),
                        field(text("实付", "Paid"), order.currency + order.total)};
  card->customItems.emplace();
  for (const auto& line : order.lines) card->customItems->push_back(itemOf(line, order.currency));
  card->customMenus = {menu(text("催促发货", "Hurry it up"), "hurry")};
  card->businessProps = {{"order", order.number}};
  return card;
}

}  // namespace orivex::demo

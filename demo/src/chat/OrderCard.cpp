#include "OrderCard.h"

#include "../base/GObjects.h"
#include "../base/Texts.h"

namespace orivex::demo {
namespace {

// `type` of a menu whose command is sent as the visitor's answer, as the chat page numbers it.
constexpr std::int64_t commandMenu = 1;

// The card travels in the page's address, so a picture must stay small.
std::string thumbnailOf(const std::string& picture) {
  const BytesPtr image(g_resources_lookup_data(picture.c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
  gsize size = 0;
  const auto* const data = static_cast<const guchar*>(g_bytes_get_data(image.get(), &size));
  const CharPtr encoded(g_base64_encode(data, size));
  return std::string("data:image/svg+xml;base64,") + encoded.get();
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

#include <gtest/gtest.h>

#include "GObjects.h"
#include "OrderCard.h"

namespace orivex::demo {
namespace {

TEST(DemoOrderCardTest, ShowsEveryLineOfTheOrderWithAPicture) {
  const auto order = latestOrder();
  const auto card = cardOf(order);
  ASSERT_TRUE(card->customItems);
  ASSERT_EQ(card->customItems->size(), order.lines.size());
  constexpr std::string_view start = "data:image/png;base64,";
  for (std::size_t index = 0; index < order.lines.size(); ++index) {
    const auto& item = card->customItems->at(index);
    EXPECT_EQ(item.customCardName, order.lines[index].name);
    EXPECT_EQ(item.customCardAmount, order.lines[index].amount);
    const auto picture = item.customCardThumbnail.value_or("");
    ASSERT_TRUE(picture.starts_with(start));
    gsize size = 0;
    const std::unique_ptr<guchar, FreeWith<g_free>> bytes(g_base64_decode(picture.c_str() + start.size(), &size));
    ASSERT_GT(size, 8U);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.get()), 8), "\x89PNG\r\n\x1a\n");
  }
  EXPECT_NE(card->title.value_or("").find(order.number), std::string::npos);
}

TEST(DemoOrderCardTest, FitsIntoAPageAddress) {
  // Web servers commonly take request lines of 16 KiB and more; escaping adds to the JSON.
  const CharPtr escaped(g_uri_escape_string(cardOf(latestOrder())->getJsonString().c_str(), ":/,+=", FALSE));
  EXPECT_GT(std::string_view(escaped.get()).size(), 1000U);
  EXPECT_LT(std::string_view(escaped.get()).size(), 15U * 1024);
}

}  // namespace
}  // namespace orivex::demo

#include <gtest/gtest.h>

#include "base/GObjects.h"
#include "chat/OrderCard.h"

namespace orivex::demo {
namespace {

TEST(DemoOrderCardTest, FitsIntoAPageAddress) {
  // Web servers commonly take request lines of 16 KiB and more; escaping adds to the JSON.
  const CharPtr escaped(g_uri_escape_string(cardOf(latestOrder())->getJsonString().c_str(), ":/,+=", FALSE));
  EXPECT_GT(std::string_view(escaped.get()).size(), 1000U);
  EXPECT_LT(std::string_view(escaped.get()).size(), 15U * 1024);
}

}  // namespace
}  // namespace orivex::demo

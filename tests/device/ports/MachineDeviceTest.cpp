#include <gtest/gtest.h>

#include "MachineDevice.h"

namespace orivex::gtk {
namespace {

TEST(MachineDeviceTest, TwoApplicationsOfOneMachineHaveIdentifiersOfTheirOwn) {
  const auto shop = MachineDevice("org.example.Shop").identifierForVendor();
  ASSERT_TRUE(shop) << "this machine has no identifier";
  EXPECT_EQ(MachineDevice("org.example.Shop").identifierForVendor(), shop);
  EXPECT_NE(MachineDevice("org.example.Bank").identifierForVendor(), shop);
  EXPECT_NE(MachineDevice("").identifierForVendor(), shop);
}

}  // namespace
}  // namespace orivex::gtk

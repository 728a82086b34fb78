#include <algorithm>

#include <glib.h>
#include <gtest/gtest.h>

#include "MachineDevice.h"

namespace orivex::gtk {
namespace {

TEST(MachineDeviceTest, TheIdentifierIsAnUpperCaseUuidThatStaysTheSame) {
  const auto identifier = MachineDevice().identifierForVendor();
  if (!identifier) GTEST_SKIP() << "this machine was never given an identifier";
  EXPECT_TRUE(g_uuid_string_is_valid(identifier->c_str())) << *identifier;
  EXPECT_TRUE(std::none_of(identifier->begin(), identifier->end(), [](char c) { return g_ascii_islower(c); }))
      << *identifier;
  EXPECT_EQ(MachineDevice().identifierForVendor(), identifier);
}

}  // namespace
}  // namespace orivex::gtk

#include <string>
#include <string_view>
#include <variant>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "files/GioTypeRegistry.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

using namespace std::string_view_literals;

class GioTypeRegistryTest : public ::testing::Test {
 protected:
  std::string typeOf(const std::string& path) const {
    const auto outcome = registry_.typeIdentifier(path);
    const auto* failure = std::get_if<Failure>(&outcome);
    return failure ? "failure: " + failure->description : std::get<std::string>(outcome);
  }

  GioTypeRegistry registry_;
  const TemporaryFolder folder_;
};

TEST_F(GioTypeRegistryTest, WithoutATellingNameTheFirstBytesTell) {
  const auto png = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"sv;
  EXPECT_EQ(typeOf(folder_.write("download", png)), "image/png");
  EXPECT_EQ(typeOf(folder_.write("download.unheard", png)), "image/png");
  EXPECT_EQ(typeOf(folder_.write("nothing", "\x01\x02\xff"sv)), "application/octet-stream");
}

TEST_F(GioTypeRegistryTest, WhatIsNoFileIsNamedAsSuchWithoutWaiting) {
  const auto pipe = folder_.path() / "pipe.png";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(typeOf(pipe), "inode/fifo");
  EXPECT_EQ(typeOf(folder_.path()), "inode/directory");
  EXPECT_EQ(typeOf(""), "failure: No such file or directory");
}

}  // namespace
}  // namespace orivex::gtk

#include <chrono>

#include <gtest/gtest.h>

#include "files/XdgFileManager.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

TEST(LeftOversTest, OnlyWhatIsOldAndOursGoes) {
  const TemporaryFolder folder;
  const auto age = [](const std::filesystem::path& file, int hours) {
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours(hours));
    return file;
  };
  const auto old = age(folder.write("a.wav", "x"), 25);
  const auto young = age(folder.write("b.wav", "x"), 23);
  const auto foreign = age(folder.write("c.txt", "x"), 25);
  const auto deeper = age(folder.write("web/d.wav", "x"), 25);
  removeLeftOvers(folder.path(), ".wav");
  removeLeftOvers(folder.path() / "missing", "");
  EXPECT_FALSE(std::filesystem::exists(old));
  for (const auto& kept : {young, foreign, deeper}) EXPECT_TRUE(std::filesystem::exists(kept)) << kept;
}

}  // namespace
}  // namespace orivex::gtk

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Bundles.h"
#include "KeyFileUserDefaults.h"
#include "MachineDevice.h"
#include "files/GioTypeRegistry.h"
#include "files/XdgFileManager.h"
#include "support/LogLines.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

using namespace std::string_view_literals;

TEST(FolderBundleTest, ReadsItsInformationAndTakesNoFolderForAResource) {
  const TemporaryFolder folder;
  folder.write(
      "Info.json",
      R"({"CFBundleVersion": "7", "names": ["skipped"], "none": null, "scale": 2, "beta": true, "text": "\u4f60"})");
  const InfoDictionary expected{{"CFBundleVersion", "7"}, {"scale", 2.0}, {"beta", true}, {"text", "\xE4\xBD\xA0"}};
  std::filesystem::create_directory(folder.path() / "eruda.js");
  const FolderBundle bundle(folder.path());
  EXPECT_EQ(bundle.infoDictionary(), expected);
  EXPECT_FALSE(bundle.pathForResource("eruda", "js"));
}

TEST(FolderBundleTest, LiesBesideTheFileThatHoldsTheAddress) {
  const auto here = std::filesystem::canonical("/proc/self/exe").parent_path();
  static const int inThisProgram = 0;
  EXPECT_EQ(FolderBundle::besideLibrary(&inThisProgram).pathForResource("skeleton", "html"),
            std::filesystem::canonical(here / "OrivexSDK.bundle/skeleton.html"));
  const auto* const inAnotherLibrary = reinterpret_cast<const void*>(&std::abort);
  EXPECT_FALSE(FolderBundle::besideLibrary(inAnotherLibrary).pathForResource("skeleton", "html"));
  const int inNoFile = 0;
  EXPECT_FALSE(FolderBundle::besideLibrary(&inNoFile).pathForResource("skeleton", "html"));
}

TEST(KeyFileUserDefaultsTest, SeesEachChangeAndTellsAFailureOnce) {
  const TemporaryFolder folder;
  const LogLines lines;
  const KeyFileUserDefaults defaults(folder.path() / "defaults.ini");
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_FALSE(defaults.boolForKey("enable_vconsole"));
  EXPECT_EQ(lines.get().size(), 0U) << "most visitors have no file";
  const auto file = folder.write("defaults.ini", "[Defaults]\nenable_eruda=true\n");
  EXPECT_TRUE(defaults.boolForKey("enable_eruda"));
  folder.write("defaults.ini", "[Defaults]\nenable_eruda=fals\n");
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_EQ(lines.get().size(), 0U);
  folder.write("defaults.ini", "nonsense");
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_FALSE(defaults.stringForKey("enable_eruda"));
  EXPECT_EQ(lines.get().size(), 1U) << "broken, told once";
  std::filesystem::remove(file);
  EXPECT_FALSE(defaults.boolForKey("enable_eruda"));
  EXPECT_EQ(lines.get().size(), 1U) << "missing again";
}

TEST(MachineDeviceTest, TwoApplicationsOfOneMachineHaveIdentifiersOfTheirOwn) {
  const auto shop = MachineDevice("org.example.Shop").identifierForVendor();
  ASSERT_TRUE(shop) << "this machine has no identifier";
  EXPECT_NE(MachineDevice("org.example.Bank").identifierForVendor(), shop);
  EXPECT_NE(MachineDevice("").identifierForVendor(), shop);
}

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

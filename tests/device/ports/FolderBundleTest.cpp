#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "FolderBundle.h"
#include "support/LogLines.h"
#include "support/TemporaryFolder.h"

namespace orivex::gtk {
namespace {

TEST(FolderBundleTest, ReadsItsInformation) {
  const TemporaryFolder folder;
  folder.write(
      "Info.json",
      R"({"CFBundleVersion": "7", "names": ["skipped"], "none": null, "scale": 2, "beta": true, "text": "\u4f60"})");
  const InfoDictionary expected{{"CFBundleVersion", "7"}, {"scale", 2.0}, {"beta", true}, {"text", "\xE4\xBD\xA0"}};
  EXPECT_EQ(FolderBundle(folder.path()).infoDictionary(), expected);
}

TEST(FolderBundleTest, BrokenInformationIsNoneAndTold) {
  for (const char* contents : {"", "[]", "{\"CFBundleVersion\": \"7\"", "{} {}"}) {
    SCOPED_TRACE(contents);
    const TemporaryFolder folder;
    folder.write("Info.json", contents);
    const LogLines lines;
    EXPECT_FALSE(FolderBundle(folder.path()).infoDictionary());
    EXPECT_EQ(lines.get().size(), 1U);
  }
}

TEST(FolderBundleTest, AFolderIsNoResource) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path() / "eruda.js");
  EXPECT_FALSE(FolderBundle(folder.path()).pathForResource("eruda", "js"));
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

}  // namespace
}  // namespace orivex::gtk

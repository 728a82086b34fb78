#include <functional>
#include <regex>

#include <gtest/gtest.h>

#include "Diagram.h"
#include "Includes.h"

namespace fs = std::filesystem;

namespace {

/// The diagram of ARCHITECTURE.md and the tree that it is about.
class ArchitectureTest : public ::testing::Test {
 protected:
  fs::path folderOf(const std::string& name) const { return tree_ / diagram_.folders.at(name); }

  /// The box whose public headers hold "orivex/..."; empty when none does.
  std::string ownerOf(const std::string& header) const {
    for (const auto& [name, folder] : diagram_.folders) {
      if (fs::exists(tree_ / folder / "include" / header)) return name;
    }
    return "";
  }

  const fs::path tree_ = ORIVEX_SOURCE_DIR;
  const Diagram diagram_ = readDiagram(tree_ / "ARCHITECTURE.md");
};

TEST_F(ArchitectureTest, TheArrowsAreTheIncludes) {
  std::set<Arrow> found;
  std::map<Arrow, fs::path> witness;
  for (const auto& [name, folder] : diagram_.folders) {
    for (const Include& include : includesOf(folderOf(name))) {
      // The mark of what libraries lend knows nobody, and everybody may use it.
      if (!include.header.starts_with("orivex/") || include.header == "orivex/Export.h") continue;
      const std::string owner = ownerOf(include.header);
      ASSERT_NE(owner, "") << include.file << " includes " << include.header
                           << ", which no folder of the diagram holds";
      if (owner == name) continue;
      found.insert({name, owner});
      witness.emplace(Arrow{name, owner}, include.file);
    }
  }
  for (const Arrow& arrow : found) {
    EXPECT_TRUE(diagram_.arrows.contains(arrow))
        << "not in the diagram: " << arrow.from << " --> " << arrow.to << ", as in " << witness.at(arrow);
  }
  for (const Arrow& arrow : diagram_.arrows) {
    EXPECT_TRUE(found.contains(arrow)) << "no include behind " << arrow.from << " --> " << arrow.to;
  }
}

TEST_F(ArchitectureTest, NoArrowLeadsBackUp) {
  std::set<std::string> above;
  std::function<void(const std::string&)> descend = [&](const std::string& name) {
    ASSERT_TRUE(above.insert(name).second) << "the arrows go in a circle through " << name;
    for (const Arrow& arrow : diagram_.arrows) {
      if (arrow.from == name) descend(arrow.to);
    }
    above.erase(name);
  };
  for (const auto& [name, folder] : diagram_.folders) descend(name);
}

TEST_F(ArchitectureTest, OnlyTheGtkBackendKnowsAToolkit) {
  const std::regex toolkit(
      R"((gtk|gdk|glib|gio|gobject|adwaita|webkit|jsc|gst|curl|libsoup|systemd)[/.-].*|jpeglib\.h)");
  for (const char* name : {"models", "platform", "session", "media", "voice", "sdk", "testing"}) {
    ASSERT_TRUE(diagram_.folders.contains(name)) << name;
    for (const Include& include : includesOf(folderOf(name))) {
      EXPECT_FALSE(std::regex_match(include.header, toolkit)) << include.file << " includes " << include.header;
    }
  }
}

}  // namespace

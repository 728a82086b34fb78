#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Arrow = std::pair<std::string, std::string>;  // from, to: by the diagram's names

/// What a mermaid diagram says: boxes whose label is a folder, and arrows between them.
struct Diagram {
  std::map<std::string, fs::path> folders;  ///< of each name, relative to the source tree
  std::set<Arrow> arrows;
};

/// Reads the page's only mermaid block.
Diagram readDiagram(const fs::path& page) {
  static const std::regex ignored(R"(\s*|\s*graph TD\s*)");
  static const std::regex box(R"re(\s*(\w+)\["([\w/]+)/"\])re");
  static const std::regex arrow(R"(\s*(\w+) --> (\w+))");
  Diagram diagram;
  int blocks = 0;
  bool isInside = false;
  std::ifstream in(page);
  std::smatch match;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("```")) {
      isInside = line == "```mermaid";
      blocks += isInside ? 1 : 0;
    } else if (isInside && std::regex_match(line, match, box)) {
      diagram.folders.emplace(match.str(1), match.str(2));
    } else if (isInside && std::regex_match(line, match, arrow)) {
      diagram.arrows.emplace(match.str(1), match.str(2));
    } else if (isInside && !std::regex_match(line, ignored)) {
      throw std::runtime_error("not understood in the diagram: " + line);
    }
  }
  if (blocks != 1) throw std::runtime_error(page.string() + ": one diagram wanted, found " + std::to_string(blocks));
  return diagram;
}

/// Every header that a C or C++ file of a folder includes, with the file.
std::vector<std::pair<fs::path, std::string>> includesOf(const fs::path& folder) {
  static const std::regex directive(R"re(\s*#\s*include\s*["<]([^">]+)[">].*)re");
  std::vector<std::pair<fs::path, std::string>> includes;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const auto type = entry.path().extension();
    if (type != ".h" && type != ".cpp" && type != ".c") continue;
    std::ifstream in(entry.path());
    std::smatch match;
    for (std::string line; std::getline(in, line);) {
      if (std::regex_match(line, match, directive)) includes.emplace_back(entry.path(), match.str(1));
    }
  }
  return includes;
}

/// The files and folders that a page names between backquotes.
std::set<std::string> pathsNamedBy(const fs::path& page) {
  static const std::regex quoted(R"re(`([\w./-]+)[^`]*`)re");
  std::set<std::string> paths;
  std::ifstream in(page);
  for (std::string line; std::getline(in, line);) {
    for (std::sregex_iterator match(line.begin(), line.end(), quoted), end; match != end; ++match) {
      const auto word = match->str(1);
      if (word.find('/') != std::string::npos || word.ends_with(".h") || word.ends_with(".cpp")) paths.insert(word);
    }
  }
  return paths;
}

/// The diagram of ARCHITECTURE.md and the tree that it is about.
class ArchitectureTest : public ::testing::Test {
 protected:
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
  for (const auto& [name, folder] : diagram_.folders) {
    for (const auto& [file, header] : includesOf(tree_ / folder)) {
      // The mark of what libraries lend knows nobody, and everybody may use it.
      if (!header.starts_with("orivex/") || header == "orivex/Export.h") continue;
      const auto owner = ownerOf(header);
      ASSERT_NE(owner, "") << file << " includes " << header << ", which no folder of the diagram holds";
      if (owner == name || !found.emplace(name, owner).second) continue;
      EXPECT_TRUE(diagram_.arrows.contains({name, owner}))
          << "not in the diagram: " << name << " --> " << owner << ", as in " << file;
    }
  }
  for (const auto& [from, to] : diagram_.arrows) {
    EXPECT_TRUE(found.contains({from, to})) << "no include behind " << from << " --> " << to;
  }
}

TEST_F(ArchitectureTest, NoArrowLeadsBackUp) {
  std::set<std::string> above;
  std::function<void(const std::string&)> descend = [&](const std::string& name) {
    ASSERT_TRUE(above.insert(name).second) << "the arrows go in a circle through " << name;
    for (const auto& [from, to] : diagram_.arrows) {
      if (from == name) descend(to);
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
    for (const auto& [file, header] : includesOf(tree_ / diagram_.folders.at(name))) {
      EXPECT_FALSE(std::regex_match(header, toolkit)) << file << " includes " << header;
    }
  }
}

TEST_F(ArchitectureTest, WhatThePageNamesExists) {
  std::set<std::string> files;
  for (const auto& [name, folder] : diagram_.folders) {
    for (const auto& entry : fs::recursive_directory_iterator(tree_ / folder)) files.insert(entry.path());
  }
  // A pair of files goes without its ending, and a file beside the one before it without its folder.
  const auto exists = [&](const std::string& path) {
    return fs::exists(tree_ / path) || std::ranges::any_of(files, [&](const std::string& file) {
             return file.ends_with("/" + path) || file.ends_with("/" + path + ".h");
           });
  };
  const auto paths = pathsNamedBy(tree_ / "ARCHITECTURE.md");
  ASSERT_FALSE(paths.empty());
  for (const auto& path : paths) EXPECT_TRUE(exists(path)) << path;
}

}  // namespace

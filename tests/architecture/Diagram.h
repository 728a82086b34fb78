#pragma once

#include <compare>
#include <filesystem>
#include <map>
#include <set>
#include <string>

/// "from includes to", by the diagram's names.
struct Arrow {
  std::string from;
  std::string to;

  auto operator<=>(const Arrow&) const = default;  // NOLINT(modernize-use-nullptr): there is no pointer
};

/// What a mermaid diagram says: boxes whose label is a folder, and arrows between them.
struct Diagram {
  std::map<std::string, std::filesystem::path> folders;  ///< of each name, relative to the source tree
  std::set<Arrow> arrows;
};

/// Reads the page's only mermaid block. Throws std::runtime_error at a line it does not understand, and when there is
/// no block or more than one.
Diagram readDiagram(const std::filesystem::path& page);

#include "Diagram.h"

#include <fstream>
#include <regex>
#include <stdexcept>

namespace {

void readLine(Diagram& diagram, const std::string& line) {
  static const std::regex ignored(R"(\s*|\s*graph TD\s*)");
  static const std::regex box(R"re(\s*(\w+)\["([\w/]+)/"\])re");
  static const std::regex arrow(R"(\s*(\w+) --> (\w+))");
  std::smatch match;
  if (std::regex_match(line, match, box)) {
    diagram.folders.emplace(match.str(1), match.str(2));
  } else if (std::regex_match(line, match, arrow)) {
    diagram.arrows.insert({match.str(1), match.str(2)});
  } else if (!std::regex_match(line, ignored)) {
    throw std::runtime_error("not understood in the diagram: " + line);
  }
}

}  // namespace

Diagram readDiagram(const std::filesystem::path& page) {
  std::ifstream in(page);
  Diagram diagram;
  int blocks = 0;
  bool inside = false;
  for (std::string line; std::getline(in, line);) {
    if (line == "```mermaid") {
      inside = true;
      ++blocks;
    } else if (line == "```") {
      inside = false;
    } else if (inside) {
      readLine(diagram, line);
    }
  }
  if (blocks != 1) throw std::runtime_error(page.string() + ": one diagram wanted, found " + std::to_string(blocks));
  return diagram;
}

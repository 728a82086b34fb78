#include "Includes.h"

#include <fstream>
#include <regex>

namespace {

void appendIncludes(std::vector<Include>& includes, const std::filesystem::path& file) {
  static const std::regex directive(R"re(\s*#\s*include\s*["<]([^">]+)[">].*)re");
  std::ifstream in(file);
  std::smatch match;
  for (std::string line; std::getline(in, line);) {
    if (std::regex_match(line, match, directive)) includes.push_back({file, match.str(1)});
  }
}

}  // namespace

std::vector<Include> includesOf(const std::filesystem::path& folder) {
  std::vector<Include> includes;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const auto type = entry.path().extension();
    if (type == ".h" || type == ".cpp" || type == ".c") appendIncludes(includes, entry.path());
  }
  return includes;
}

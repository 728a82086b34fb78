#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// One `#include` line.
struct Include {
  std::filesystem::path file;  ///< the file that includes
  std::string header;          ///< what stands between the quotes or angle brackets
};

/// Every include in the C and C++ files of a folder.
std::vector<Include> includesOf(const std::filesystem::path& folder);

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orivex::gtk {

/// Gives files whose path is no UTF-8 text, which a web engine can neither name nor read, links that it can. The links
/// go with this object.
class NamedLinks {
 public:
  NamedLinks() = default;
  NamedLinks(const NamedLinks&) = delete;
  NamedLinks& operator=(const NamedLinks&) = delete;
  ~NamedLinks();

  /// A path to the file at `path` that is text: that path itself where it is.
  std::string textPath(const std::string& path);

 private:
  std::vector<std::filesystem::path> folders_;
};

}  // namespace orivex::gtk
